#pragma once

#include "usage/month_sheet.h"
#include "usage/pasted_usage.h"

#include <QAbstractTableModel>
#include <QItemSelection>

#include <string>
#include <unordered_map>

namespace mact {

/// A month's sheet as a table. It makes no item for a cell: a month can have 32,767 rows. Below the sheet's
/// rows there is one more, in which the Material ID of another is typed.
class MonthSheetTable : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        MaterialId,
        Description,
        Quantity,
        Unit,
        MonthBefore,
        Pounds,
        Recorded,
        Remark,
        ColumnCount
    };

    explicit MonthSheetTable(MonthSheet sheet, QObject* parent = nullptr)
        : QAbstractTableModel(parent), m_sheet(std::move(sheet)) {}

    const MonthSheet& Sheet() const { return m_sheet; }
    void Show(MonthSheet sheet);

    bool IsIdRow(int row) const { return row == rowCount() - 1; }
    /// Empty in the last row.
    std::optional<std::int16_t> MaterialAt(int row) const;
    /// Whether something can be typed or chosen in it.
    bool IsEntry(const QModelIndex& index) const;
    /// Whether anything would be lost.
    bool IsAnyTyped() const { return !m_typedId.isEmpty() || m_sheet.IsAnyEntered(); }
    /// What is wrong with the row, in words; otherwise why it may be a mistake; empty if there is nothing to
    /// say.
    QString RemarkOf(int row) const;
    /// Whether the remark is a doubt, with which the row can be saved.
    bool IsDoubtOnly(int row) const;
    /// The first row with something wrong, and how many there are.
    struct Faults {
        int First = -1; ///< row
        int Column = 0; ///< where that is mended
        int Count = 0;
    };
    Faults FindFaults() const;
    /// Says why the row could not be saved, until it is changed.
    void Refuse(std::size_t row, const std::string& reason);

    void ChooseUnit(int row, std::int16_t unit);
    /// The other unit; of none the first.
    void ToggleUnit(int row);
    void Empty(const QItemSelection& cells);
    /// In every row that is selected in part.
    void CopyLastMonth(const QItemSelection& cells);
    PasteOutcome PasteAt(std::string_view text, int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    /// What is on the sheet has changed.
    void SheetChanged();
    /// The row of the material whose ID was typed.
    void MaterialChosen(int row);

private:
    QString FaultOf(int row) const;
    QString CellText(int row, int column) const;
    QString IdRowText(int column) const;
    QVariant Colour(const QModelIndex& index) const;
    void TypeId(const QString& customId);
    void AnnounceRows(int first, int last);
    const SheetRow& RowAt(int row) const { return m_sheet.Rows()[static_cast<std::size_t>(row)]; }

    MonthSheet m_sheet;
    QString m_typedId{};                                  ///< that no material has
    std::unordered_map<std::size_t, QString> m_refused{}; ///< by row
};
} // namespace mact
