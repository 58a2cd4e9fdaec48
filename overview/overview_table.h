#pragma once

#include "overview/overview_rows.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

#include <vector>

namespace mact {

/// The overview's table. It makes no item for a cell: a shop can have 32,767 rows.
class OverviewTable : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Item, Used, Content, Limit, Bar, Headroom, Is, FirstMonth, ColumnCount };
    /// In the column Bar, percent of the limit; none without a limit.
    static constexpr int PercentRole = Qt::UserRole;
    static constexpr int StateRole = Qt::UserRole + 1;

    using QAbstractTableModel::QAbstractTableModel;

    /// `rows` are worst first; `months` since the start month. They are shown in the order of the column that
    /// was last sorted by, at first worst first.
    void Show(std::vector<OverviewRow> rows, int months);
    /// In the order shown.
    const OverviewRow& RowAt(int place) const { return m_rows[m_order[static_cast<std::size_t>(place)]]; }
    /// The whole table with its headings, separated by tabs, a line each; the bars are left out.
    QString Text() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// By the state it is worst first.
    void sort(int column, Qt::SortOrder order) override;

private:
    QString CellText(const OverviewRow& row, int column) const;
    void SortRows();

    std::vector<OverviewRow> m_rows{};
    std::vector<std::size_t> m_order{}; ///< in m_rows
    int m_months = 0;
    int m_column = Is;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

/// Draws a bar from 80 % of the limit to the limit and over it.
class LimitBar : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
} // namespace mact
