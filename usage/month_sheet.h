#pragma once

#include "base/by_number.h"
#include "store/data_folder.h"
#include "usage/usage_changes.h"
#include "usage/usage_entry.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace mact {

/// A month's usage on one sheet: a row for each material, entered and saved together. All texts are code-page
/// text.

/// What a sheet needs to know of a live material.
struct SheetMaterial {
    std::int16_t MaterialId = 0;
    std::string CustomId{}; ///< trimmed
    std::string Description{};
    double Density = 0; ///< lb/gal
};

/// What the sheets of a company are made from, as it stood in the files at one time.
class SheetRecords {
public:
    static Result<SheetRecords> Read(const DataFiles& data);

    /// In file order. If several have the same number, the first is here alone.
    const std::vector<SheetMaterial>& Materials() const { return m_materials; }
    /// Live records only, in file order.
    const std::vector<UsageRecord>& Usage() const { return m_usage; }
    /// The first with this Material ID, compared trimmed and ignoring case; null if there is none.
    const SheetMaterial* Find(std::string_view customId) const;
    /// Null if there is none.
    const SheetMaterial* Find(std::int16_t materialId) const;

private:
    Done Take(const DataFiles& data);

    std::vector<SheetMaterial> m_materials;
    std::vector<UsageRecord> m_usage;
    ByNumber<std::uint16_t> m_byNumber; ///< place in m_materials, counted from 1; 0 = none
    std::unordered_map<std::string, std::size_t> m_byCustomId;
};

/// The month after the newest with usage; without any, `today`.
std::chrono::year_month FirstSheetMonth(const SheetRecords& records, std::chrono::year_month today);

/// M/YYYY, as usage records have it.
std::string PeriodText(std::chrono::year_month month);

struct SheetRow {
    SheetMaterial Material{};
    std::optional<UsageRecord> LastMonth{}; ///< of the month before
    std::optional<UsageRecord> Present{};   ///< the record that the month has already
    std::string Quantity{};                 ///< as typed
    std::optional<std::int16_t> Unit{};     ///< UnitMgal or UnitLbs; empty = nothing selected
};

/// What is wrong with a row: the usage editor's messages, as FormErrors joins them.
struct SheetError {
    std::size_t Row = 0; ///< index
    std::string Text{};
};

/// What a sheet is to store.
struct SheetChanges {
    std::vector<UsageChange> Changes{};
    std::vector<std::size_t> Rows{}; ///< the row of each change
};

/// The rows of a month, by Material ID: each material used in the twelve months before it or in the month
/// itself, then those that were added. A record that the month has already is in its row, to be edited; of
/// several of one material, the first. Reading and entering change no file.
class MonthSheet {
public:
    /// `records` outlives the sheet.
    MonthSheet(const SheetRecords& records, std::chrono::year_month month);

    std::chrono::year_month Month() const { return m_month; }
    const SheetRecords& Records() const { return *m_records; }
    const std::vector<SheetRow>& Rows() const { return m_rows; }
    /// The row of the live material with this Material ID, added if there is none. Empty if there is no such
    /// material.
    std::optional<std::size_t> AddRow(std::string_view customId);
    /// Empty if the material has no row.
    std::optional<std::size_t> RowOf(std::int16_t materialId) const;

    void EnterQuantity(std::size_t row, std::string_view text);
    void SelectUnit(std::size_t row, std::optional<std::int16_t> unit);
    /// Enters last month's quantity and unit. False if there is none.
    bool CopyLastMonth(std::size_t row);

    /// Whether the row says something else than what is stored: it is to be checked and saved.
    bool IsEntered(std::size_t row) const;
    bool IsAnyEntered() const;
    /// Of a row that is entered; empty if nothing is wrong.
    std::string ErrorsOf(std::size_t row) const;
    /// Of a row that is entered, why it may be a mistake (DoubtOn); empty if nothing speaks for one. Looks
    /// through all usage, in 0.05 ms at the limit: for rows that are shown.
    std::string DoubtOf(std::size_t row) const;
    /// Of all rows that are entered, in their order.
    std::vector<SheetError> Errors() const;
    /// The rows that are entered and in which nothing is wrong.
    SheetChanges Changes() const;

    /// What the row says, in pounds; empty if that is no quantity, or not finite.
    std::optional<double> Pounds(std::size_t row) const;
    /// Of the whole month with these rows. Rows without a quantity are left out. Asked after every key: it
    /// adds what is known of each row.
    double Pounds() const;

private:
    SheetRow RowFor(const SheetMaterial& material) const;
    void PushRow(const SheetMaterial& material);
    /// To be called after a change of the row.
    void Weigh(std::size_t row);
    UsageEntry EntryOf(const SheetRow& row) const;
    /// Notes a record of the month or of one of the twelve before it.
    void TakeUsage(const UsageRecord& usage, int monthsBefore);

    /// What is known of a material's usage.
    struct Used {
        const UsageRecord* LastMonth = nullptr;
        const UsageRecord* Present = nullptr;
        const UsageRecord* Newest = nullptr; ///< of the twelve months
        int NewestBefore = 0;                ///< how many months before the month that is
    };

    const SheetRecords* m_records;
    std::chrono::year_month m_month;
    std::vector<SheetRow> m_rows;
    std::vector<double> m_pounds; ///< of each row; 0 without a quantity
    std::unordered_map<std::int16_t, Used> m_used;
    std::unordered_map<std::int16_t, std::size_t> m_rowOf; ///< by number of the material
    double m_poundsWithoutRow = 0;                         ///< of further records of a material in the month
};
} // namespace mact
