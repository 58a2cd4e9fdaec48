#include "overview/overview_table.h"

#include "dialogs/dialog_routines.h"
#include "overview/overview_csv.h"
#include "overview/state_colours.h"
#include "overview/state_sign.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace mact {
namespace {

constexpr double BarStart = 80; // percent of the limit
constexpr double BarEnd = 110;
constexpr double Last = std::numeric_limits<double>::infinity(); // in any order by number

/// What a column other than Item is sorted by. By the state the rows stay as they are, worst first.
double SortKey(const OverviewRow& row, int column) {
    switch (column) {
    case OverviewTable::Used:
        return row.Megagrams;
    case OverviewTable::Content:
        return row.Value;
    case OverviewTable::Limit:
        return row.Limit.value_or(Last);
    case OverviewTable::Bar:
    case OverviewTable::Headroom:
        return row.Headroom.value_or(Last);
    case OverviewTable::FirstMonth:
        if (!row.Since) return Last;
        return static_cast<double>(*row.Since);
    default:
        return 0;
    }
}

} // namespace

void OverviewTable::Show(std::vector<OverviewRow> rows, int months) {
    beginResetModel();
    m_rows = std::move(rows);
    m_months = months;
    SortRows();
    endResetModel();
}

void OverviewTable::SortRows() {
    m_order.resize(m_rows.size());
    std::iota(m_order.begin(), m_order.end(), std::size_t{0});
    if (m_column == Item)
        std::ranges::stable_sort(m_order, {}, [&](std::size_t row) { return m_rows[row].Item; });
    else
        std::ranges::stable_sort(m_order, {}, [&](std::size_t row) {
            const double key = SortKey(m_rows[row], m_column);
            if (std::isnan(key)) return Last; // it would not be in any order
            return key;
        });
    if (m_sortOrder == Qt::DescendingOrder) std::ranges::reverse(m_order);
}

void OverviewTable::sort(int column, Qt::SortOrder order) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> places;
    for (const QModelIndex& index : before)
        places.push_back(m_order[static_cast<std::size_t>(index.row())]);
    m_column = column;
    m_sortOrder = order;
    SortRows();
    QModelIndexList after;
    for (qsizetype index = 0; index < before.size(); ++index) {
        const auto place = std::ranges::find(m_order, places[static_cast<std::size_t>(index)]);
        after << this->index(static_cast<int>(place - m_order.begin()), before[index].column());
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

int OverviewTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int OverviewTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString OverviewTable::CellText(const OverviewRow& row, int column) const {
    const QString unit = FromUtf8(UnitOf(row));
    switch (column) {
    case Item:
        return FromCodePage(row.Item) + (row.Material ? tr(" (filled resin)") : QString());
    case Used:
        return FromUtf8(RoundedText(row.Megagrams));
    case Content: {
        const std::string value = RoundedText(row.Value);
        return value.empty() ? tr("no figure") : FromUtf8(value) + unit;
    }
    case Limit:
        return row.Limit ? FromUtf8(ReportText(*row.Limit)) + unit : tr("no limit");
    case Headroom:
        return row.Headroom ? FromUtf8(RoundedText(*row.Headroom)) + QStringLiteral(" %") : QString();
    case Is:
        return FromUtf8(SignOf(row.Judged.Is)) + FromUtf8(StateInWords(row, m_months));
    case FirstMonth:
        return row.Since ? FromUtf8(ShortMonthName(*row.Since)) : QString();
    default:
        return {};
    }
}

QVariant OverviewTable::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const OverviewRow& row = RowAt(index.row());
    const bool isText = index.column() == Item || index.column() == Is;
    switch (role) {
    case Qt::DisplayRole:
        return CellText(row, index.column());
    case Qt::ToolTipRole:
        if (index.column() == Content) return tr("Not rounded: %1").arg(FromUtf8(ExactText(row.Exact)));
        return isText ? ToolTipOf(CellText(row, index.column())) : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == Bar && row.Headroom
                   ? tr("%1 % of the limit").arg(FromUtf8(RoundedText(100 - *row.Headroom)))
                   : CellText(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(isText ? Qt::AlignLeft | Qt::AlignVCenter
                                          : Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return index.column() == Is ? ColourOf(row.Judged.Is, row.IsNarrow, QApplication::palette())
                                    : QVariant();
    case StateRole:
        return static_cast<int>(row.Judged.Is);
    case PercentRole:
        return row.Headroom ? 100 - *row.Headroom : QVariant();
    default:
        return {};
    }
}

QVariant OverviewTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::ToolTipRole && section == FirstMonth)
        return tr("The first of the last 36 month ends at which it was over or differed");
    if (role == Qt::ToolTipRole && section == Headroom)
        return tr("What is left of the limit, in percent of it");
    if (role != Qt::DisplayRole) return {};
    switch (section) {
    case Item:
        return tr("Type and method");
    case Used:
        return tr("Mg used");
    case Content:
        return tr("Content");
    case Limit:
        return tr("Limit");
    case Bar:
        return tr("80 % to limit");
    case Headroom:
        return tr("Headroom");
    case Is:
        return tr("State");
    default:
        return tr("First trouble");
    }
}

QString OverviewTable::Text() const {
    QString text;
    for (int place = -1; place < rowCount(); ++place) {
        QStringList cells;
        for (int column = 0; column < ColumnCount; ++column)
            if (column != Bar)
                cells << (place < 0
                              ? headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()
                              : CellText(RowAt(place), column).replace(QLatin1Char('\t'), QLatin1Char(' ')));
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return text;
}

void LimitBar::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    const QVariant percent = index.data(OverviewTable::PercentRole);
    if (!percent.isValid()) return;
    const QRectF area = QRectF(option.rect).adjusted(4, 4, -4, -4);
    const auto at = [&](double value) {
        const double share = (std::clamp(value, BarStart, BarEnd) - BarStart) / (BarEnd - BarStart);
        return area.left() + area.width() * share;
    };
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto state = static_cast<State>(index.data(OverviewTable::StateRole).toInt());
    const bool isTrouble = IsTrouble(state);
    const QColor text = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    QColor bar = isTrouble ? ColourOf(state, false, option.palette) : FigureColour(option.palette);
    if (isSelected) {
        bar = text;
        bar.setAlphaF(0.6F); // or the limit's line would not be seen on it
    }
    painter->fillRect(QRectF(area.topLeft(), QPointF(at(percent.toDouble()), area.bottom())), bar);
    painter->setPen(QPen(text, 1));
    painter->drawLine(QPointF(at(100), area.top() - 2), QPointF(at(100), area.bottom() + 2));
}

QSize LimitBar::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.fontMetrics.averageCharWidth() * 14, option.fontMetrics.height()};
}
} // namespace mact
