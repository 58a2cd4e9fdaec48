#include "overview/trace_model.h"

#include "dialogs/dialog_routines.h"

#include <QFontMetrics>

#include <algorithm>
#include <utility>

namespace mact {

void TraceModel::Show(TraceNode root) {
    beginResetModel();
    m_root = std::move(root);
    m_lines.assign(1, {.Node = &m_root});
    m_longestOf.clear();
    for (std::size_t line = 0; line < m_lines.size(); ++line) {
        const TraceNode& node = *m_lines[line].Node;
        const int depth = m_lines[line].Depth;
        m_lines[line].FirstChild = m_lines.size();
        for (const TraceNode& child : node.Children)
            m_lines.push_back({.Node = &child, .Parent = line, .Depth = depth + 1});
        const TraceNode*& longest = m_longestOf[depth];
        if (!longest || longest->Text.size() < node.Text.size()) longest = &node;
    }
    endResetModel();
}

const TraceNode& TraceModel::NodeAt(const QModelIndex& index) const {
    return index.isValid() ? *m_lines[index.internalId()].Node : m_root;
}

int TraceModel::WidthOfLongest(const QFontMetrics& metrics, int indentation) const {
    constexpr double room = 1.05; // a line of fewer but wider letters can be the widest
    int width = 0;
    for (const auto& [depth, node] : m_longestOf) {
        const int text = metrics.horizontalAdvance(QString::fromStdString(node->Text));
        width = std::max(width, (depth + 1) * indentation + static_cast<int>(text * room));
    }
    return width;
}

int TraceModel::RowOf(std::size_t line) const {
    return line == 0 ? 0 : static_cast<int>(line - m_lines[m_lines[line].Parent].FirstChild);
}

QModelIndex TraceModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    if (!parent.isValid()) return createIndex(row, column, quintptr{0});
    return createIndex(row, column, m_lines[parent.internalId()].FirstChild + static_cast<std::size_t>(row));
}

QModelIndex TraceModel::parent(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == 0) return {};
    const std::size_t parent = m_lines[index.internalId()].Parent;
    return createIndex(RowOf(parent), 0, parent);
}

int TraceModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return m_lines.empty() ? 0 : 1;
    return static_cast<int>(m_lines[parent.internalId()].Node->Children.size());
}

int TraceModel::columnCount(const QModelIndex&) const {
    return 1;
}

// Without this flag a tree view that opens everything keeps each leaf in mind as an open line.
Qt::ItemFlags TraceModel::flags(const QModelIndex& index) const {
    const bool isLeaf = NodeAt(index).Children.empty();
    return QAbstractItemModel::flags(index) | (isLeaf ? Qt::ItemNeverHasChildren : Qt::NoItemFlags);
}

QVariant TraceModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const QString text = QString::fromStdString(NodeAt(index).Text);
    if (role == Qt::DisplayRole) return text;
    if (role == Qt::ToolTipRole) return ToolTipOf(text);
    return {};
}
} // namespace mact
