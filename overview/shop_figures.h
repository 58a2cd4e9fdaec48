#pragma once

#include "overview/month_figures.h"
#include "overview/operations.h"
#include "overview/shop_records.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace mact {

/// A material of a window, with what it was used for and its part in the figures.
struct UsedMaterial {
    std::size_t Material = 0;           ///< in ShopRecords::Materials
    std::size_t Row = 0;                ///< the first with its type and method in ShopRecords::Types
    double Pounds = 0;                  ///< added up in file order; not a number if the sum is not finite
    double KgReport = 0;                ///< as the weighted-average report rounds it
    double MgReport = 0;                ///< as the emission-average report rounds it
    double PointValueReport = 0;        ///< kg/Mg
    double PointValueExact = 0;         ///< kg/Mg; with the filler of a filled resin
    double PointValueWithoutFiller = 0; ///< kg/Mg, not rounded
    double Megagrams() const;           ///< not rounded
};

/// Whether an exact figure is above its limit, by more than binary fractions may be off.
bool IsAbove(double exact, double limit);

/// "type, method", as written in the material-type table.
std::string PairName(const HapContentRecord& row);

/// A line of the two averaging reports. They may show a type and method more than once, or not at all.
struct ReportLine {
    HapContentRecord Row{};
    std::size_t FirstRow = 0; ///< the first with its type and method in ShopRecords::Types
};

/// Calculates the figures of any month end from the records of a shop. What does not depend on the month is
/// calculated once. Keeps a reference to the records, whose materials and types are not to change.
class ShopFigures {
public:
    /// Without a start month, the first month with a live record is it.
    explicit ShopFigures(const ShopRecords& shop, std::optional<MonthNumber> start = {});
    ShopFigures(ShopRecords&&, std::optional<MonthNumber> = {}) = delete;

    /// To be called when the usage of the records has changed: takes less than beginning anew.
    void TakeUsage();

    const ShopRecords& Shop() const { return m_shop; }
    std::optional<MonthNumber> StartMonth() const { return m_start; }
    /// The newest month with a live usage record; empty without any.
    std::optional<MonthNumber> NewestUse() const;
    /// Whether a live record has the month, whatever its quantity.
    bool HasEntry(MonthNumber month) const;

    MonthFigures At(MonthNumber monthEnd) const;
    /// What was used in the twelve months and has a row in the material-type table, in file order.
    std::vector<UsedMaterial> UsedInWindow(MonthNumber monthEnd) const;
    /// The same for one month alone.
    std::vector<UsedMaterial> UsedInMonth(MonthNumber month) const;
    /// The live usage of a material in the window, as places in ShopRecords::Usage, in file order.
    std::vector<std::size_t> UsesInWindow(std::size_t material, MonthNumber monthEnd) const;
    /// The row of the material-type table by which a material is judged; empty if it has none.
    std::optional<std::size_t> RowOf(std::size_t material) const { return m_materials[material].Row; }
    /// The first row of the table that a user added and that has the type of `row`, itself such a row.
    std::size_t FirstAddedRowOfType(std::size_t row) const { return m_firstAdded[row]; }
    /// The lines of the two averaging reports, in their order.
    const std::vector<ReportLine>& Lines() const { return m_lines; }
    const UseClass& ClassOfRow(std::size_t row) const { return m_classes[row]; }

private:
    struct Use {
        double Pounds = 0;     ///< of the first material with its number; not a number if that is not finite
        std::size_t Place = 0; ///< in ShopRecords::Usage
        MonthNumber FirstEnd = 0; ///< the month ends in whose windows it is
        MonthNumber LastEnd = 0;
        std::optional<MonthNumber> Month{}; ///< empty if its period is no month
    };
    struct Material {
        std::optional<std::size_t> Row{};
        std::size_t FirstUse = 0; ///< in m_uses
        std::size_t EndOfUses = 0;
        bool IsFirst = false; ///< with its number; in a damaged file several may have it
        double PointValueReport = 0;
        double PointValueExact = 0;
        double PointValueWithoutFiller = 0;
    };

    void PrepareLines();
    void PrepareMaterials();
    void SortUsage();
    void FindUses();
    double PoundsOf(const Use& use, const ShopMaterial& material) const;
    template <class Counts> std::vector<UsedMaterial> UsedWhere(const Counts& counts) const;
    int MonthsUntil(MonthNumber monthEnd) const;
    std::vector<MonthNumber> MonthsWithoutEntry(MonthNumber monthEnd) const;
    void AddFilled(const std::vector<UsedMaterial>& used, MonthFigures& figures) const;
    void AddAmounts(MonthFigures& figures) const;

    const ShopRecords& m_shop;
    std::optional<MonthNumber> m_givenStart;
    std::optional<MonthNumber> m_start;
    TypeMethodPairs m_pairs;
    std::vector<std::size_t> m_rowOfPair;  ///< the first row of each pair
    std::vector<UseClass> m_classes;       ///< by row of the material-type table
    std::vector<std::size_t> m_firstAdded; ///< by row; of rows that no user added, themselves
    std::vector<ReportLine> m_lines;       ///< in the order of the reports
    std::vector<Use> m_uses;               ///< by material number, then in file order
    std::vector<MonthNumber> m_entered;    ///< the months with a live record, ascending
    std::vector<Material> m_materials;     ///< as in ShopRecords
};
} // namespace mact
