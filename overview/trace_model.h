#pragma once

#include "overview/trace.h"

#include <QAbstractItemModel>

#include <map>
#include <vector>

class QFontMetrics;

namespace mact {

/// A trace for a tree view, which asks for the lines that it paints alone: a trace can have several lines for
/// each of 32,767 materials.
class TraceModel : public QAbstractItemModel {
public:
    using QAbstractItemModel::QAbstractItemModel;

    void Show(TraceNode root);
    /// An index that is not valid stands for all.
    const TraceNode& NodeAt(const QModelIndex& index) const;
    /// Enough for the longest line, however deep it stands. Measures one line of each depth.
    int WidthOfLongest(const QFontMetrics& metrics, int indentation) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    struct Line {
        const TraceNode* Node = nullptr;
        std::size_t Parent = 0;
        std::size_t FirstChild = 0; ///< the others follow it
        int Depth = 0;
    };
    int RowOf(std::size_t line) const;

    TraceNode m_root;
    std::vector<Line> m_lines;                   ///< depth by depth; an index has its line's place
    std::map<int, const TraceNode*> m_longestOf; ///< in characters, by depth
};
} // namespace mact
