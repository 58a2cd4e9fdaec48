#include "lists/month_sheet_table.h"

#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/hint_label.h"
#include "materials/units.h"
#include "overview/overview_csv.h"
#include "overview/state_colours.h"

#include <QApplication>

#include <algorithm>

namespace mact {
namespace {

QString UnitText(std::optional<std::int16_t> unit) {
    if (!unit) return {};
    if (*unit == UnitLbs) return QStringLiteral("lbs");
    return *unit == UnitMgal ? QStringLiteral("Mgal") : QStringLiteral("?");
}

/// The editor's messages in one line, without what sets them off in a box.
QString InOneLine(std::string_view errors) {
    QStringList sentences;
    for (QString line : FromCodePage(errors).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)) {
        if (line.startsWith(QLatin1String("- "))) line.remove(0, 2);
        sentences << line;
    }
    return sentences.join(u' ');
}

QString AsSentence(const std::string& clause) {
    QString sentence = FromUtf8(clause);
    if (sentence.isEmpty()) return sentence;
    sentence.front() = sentence.front().toUpper();
    return sentence + u'.';
}

bool IsNumberColumn(int column) {
    return column == MonthSheetTable::Quantity || column == MonthSheetTable::MonthBefore ||
           column == MonthSheetTable::Pounds;
}

} // namespace

void MonthSheetTable::Show(MonthSheet sheet) {
    beginResetModel();
    m_sheet = std::move(sheet);
    m_typedId.clear();
    m_refused.clear();
    endResetModel();
    emit SheetChanged();
}

std::optional<std::int16_t> MonthSheetTable::MaterialAt(int row) const {
    if (row < 0 || row >= rowCount() || IsIdRow(row)) return std::nullopt;
    return RowAt(row).Material.MaterialId;
}

bool MonthSheetTable::IsEntry(const QModelIndex& index) const {
    if (!index.isValid()) return false;
    if (IsIdRow(index.row())) return index.column() == MaterialId;
    return index.column() == Quantity || index.column() == Unit;
}

QString MonthSheetTable::RemarkOf(int row) const {
    if (row < 0 || row >= rowCount()) return {};
    const QString fault = FaultOf(row);
    return fault.isEmpty() && !IsIdRow(row) ? AsSentence(m_sheet.DoubtOf(static_cast<std::size_t>(row)))
                                            : fault;
}

bool MonthSheetTable::IsDoubtOnly(int row) const {
    return row >= 0 && row < rowCount() && FaultOf(row).isEmpty();
}

QString MonthSheetTable::FaultOf(int row) const {
    if (IsIdRow(row))
        return m_typedId.isEmpty() ? QString() : tr("There is no material with this Material ID.");
    const auto place = static_cast<std::size_t>(row);
    const auto refused = m_refused.find(place);
    return refused == m_refused.end() ? InOneLine(m_sheet.ErrorsOf(place)) : refused->second;
}

MonthSheetTable::Faults MonthSheetTable::FindFaults() const {
    Faults faults;
    const std::vector<SheetError> errors = m_sheet.Errors();
    faults.Count = static_cast<int>(errors.size());
    if (!errors.empty()) {
        faults.First = static_cast<int>(errors.front().Row);
        const bool isNumber = IsNumeric(Trim(RowAt(faults.First).Quantity));
        faults.Column = isNumber ? Unit : Quantity; // in the order of the checks
    }
    if (m_typedId.isEmpty()) return faults;
    if (faults.Count++ == 0) faults.First = rowCount() - 1; // in its first column
    return faults;
}

void MonthSheetTable::Refuse(std::size_t row, const std::string& reason) {
    m_refused[row] = AsSentence(reason);
    const int place = static_cast<int>(row);
    emit dataChanged(index(place, 0), index(place, ColumnCount - 1));
}

void MonthSheetTable::AnnounceRows(int first, int last) {
    for (int row = first; row <= last && !m_refused.empty(); ++row)
        m_refused.erase(static_cast<std::size_t>(row));
    emit dataChanged(index(first, 0), index(last, ColumnCount - 1));
    emit SheetChanged();
}

void MonthSheetTable::ChooseUnit(int row, std::int16_t unit) {
    if (IsIdRow(row)) return;
    m_sheet.SelectUnit(static_cast<std::size_t>(row), unit);
    AnnounceRows(row, row);
}

void MonthSheetTable::ToggleUnit(int row) {
    if (!IsIdRow(row)) ChooseUnit(row, RowAt(row).Unit == UnitMgal ? UnitLbs : UnitMgal);
}

void MonthSheetTable::Empty(const QItemSelection& cells) {
    for (const QItemSelectionRange& range : cells) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            const auto place = static_cast<std::size_t>(row);
            if (IsIdRow(row)) {
                if (range.left() == MaterialId) m_typedId.clear();
                continue;
            }
            if (range.left() <= Quantity && range.right() >= Quantity) m_sheet.EnterQuantity(place, {});
            if (range.left() <= Unit && range.right() >= Unit) m_sheet.SelectUnit(place, {});
        }
        AnnounceRows(range.top(), range.bottom());
    }
}

void MonthSheetTable::CopyLastMonth(const QItemSelection& cells) {
    for (const QItemSelectionRange& range : cells) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            if (!IsIdRow(row)) m_sheet.CopyLastMonth(static_cast<std::size_t>(row));
        AnnounceRows(range.top(), range.bottom());
    }
}

PasteOutcome MonthSheetTable::PasteAt(std::string_view text, int row) {
    // Into a copy: how many rows are added is to be announced before they are.
    MonthSheet pasted = m_sheet;
    PasteOutcome outcome = Paste(pasted, text, static_cast<std::size_t>(std::max(row, 0)));
    const int before = static_cast<int>(m_sheet.Rows().size());
    const int after = static_cast<int>(pasted.Rows().size());
    if (after > before) beginInsertRows({}, before, after - 1);
    m_sheet = std::move(pasted);
    if (after > before) endInsertRows();
    for (const std::size_t entered : outcome.Rows)
        m_refused.erase(entered);
    if (!outcome.Rows.empty()) {
        const auto [first, last] = std::ranges::minmax(outcome.Rows);
        emit dataChanged(index(static_cast<int>(first), 0), index(static_cast<int>(last), ColumnCount - 1));
        emit SheetChanged();
    }
    return outcome;
}

int MonthSheetTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_sheet.Rows().size()) + 1;
}

int MonthSheetTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags MonthSheetTable::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    // A unit is chosen by a single key, without an editor.
    return IsEntry(index) && index.column() != Unit ? flags | Qt::ItemIsEditable : flags;
}

QString MonthSheetTable::IdRowText(int column) const {
    if (column == MaterialId) return m_typedId;
    if (column == Description && m_typedId.isEmpty()) return tr("Type another Material ID");
    return column == Remark ? RemarkOf(rowCount() - 1) : QString();
}

QString MonthSheetTable::CellText(int place, int column) const {
    if (IsIdRow(place)) return IdRowText(column);
    const SheetRow& row = RowAt(place);
    switch (column) {
    case MaterialId:
        return FromCodePage(row.Material.CustomId);
    case Description:
        return FromCodePage(row.Material.Description);
    case Quantity:
        return FromCodePage(row.Quantity);
    case Unit:
        return UnitText(row.Unit);
    case MonthBefore:
        if (!row.LastMonth) return {};
        return FromCodePage(NumberText(row.LastMonth->Quantity)) + u' ' + UnitText(row.LastMonth->Unit);
    case Pounds: {
        const std::optional<double> pounds = m_sheet.Pounds(static_cast<std::size_t>(place));
        return pounds ? FromUtf8(RoundedText(*pounds)) : QString();
    }
    case Recorded:
        return row.Present ? tr("Yes") : QString();
    default:
        return RemarkOf(place);
    }
}

QVariant MonthSheetTable::Colour(const QModelIndex& index) const {
    const QPalette palette = QApplication::palette();
    if (index.column() == Remark)
        return IsDoubtOnly(index.row()) ? DoubtColour(palette) : ColourOf(State::Over, false, palette);
    const bool isHint =
        index.column() == MonthBefore || (IsIdRow(index.row()) && index.column() == Description);
    return isHint ? QVariant(palette.color(QPalette::PlaceholderText)) : QVariant();
}

QVariant MonthSheetTable::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return CellText(index.row(), column);
    case Qt::ToolTipRole:
        if (column == MaterialId || column == Description || column == Remark)
            return ToolTipOf(CellText(index.row(), column));
        return column == Unit ? tr("m or l, or the space bar, changes it") : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(IsNumberColumn(column) ? Qt::AlignRight | Qt::AlignVCenter
                                                          : Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return Colour(index);
    default:
        return {};
    }
}

bool MonthSheetTable::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !IsEntry(index)) return false;
    if (index.column() == MaterialId) {
        TypeId(value.toString().trimmed());
        return true;
    }
    const std::string quantity = ToCodePage(value.toString());
    if (RowAt(index.row()).Quantity == quantity) return true; // what was refused stays so
    m_sheet.EnterQuantity(static_cast<std::size_t>(index.row()), quantity);
    AnnounceRows(index.row(), index.row());
    return true;
}

void MonthSheetTable::TypeId(const QString& customId) {
    const std::string typed = ToCodePage(customId);
    // Nothing typed is no Material ID, even if a damaged record has an empty one.
    const SheetMaterial* const material = typed.empty() ? nullptr : m_sheet.Records().Find(typed);
    m_typedId = material ? QString() : customId;
    const int idRow = rowCount() - 1;
    emit dataChanged(index(idRow, 0), index(idRow, ColumnCount - 1));
    emit SheetChanged();
    if (!material) return;
    if (!m_sheet.RowOf(material->MaterialId)) {
        beginInsertRows({}, idRow, idRow);
        m_sheet.AddRow(typed);
        endInsertRows();
    }
    emit MaterialChosen(static_cast<int>(m_sheet.RowOf(material->MaterialId).value_or(0)));
}

QVariant MonthSheetTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(IsNumberColumn(section) ? Qt::AlignRight | Qt::AlignVCenter
                                                           : Qt::AlignLeft | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && section == Recorded)
        return tr("Whether the month has a record of the material already");
    if (role != Qt::DisplayRole) return {};
    switch (section) {
    case MaterialId:
        return tr("Material ID");
    case Description:
        return tr("Description");
    case Quantity:
        return tr("Quantity");
    case Unit:
        return tr("Unit");
    case MonthBefore:
        return tr("Last month");
    case Pounds:
        return tr("Pounds");
    case Recorded:
        return tr("Recorded");
    default:
        return tr("What is wrong");
    }
}
} // namespace mact
