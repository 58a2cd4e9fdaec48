#include "overview/attention.h"

#include "base/by_number.h"
#include "base/numbers.h"
#include "base/text.h"
#include "check/record_findings.h"
#include "materials/units.h"
#include "store/data_folder.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace mact {
namespace {

constexpr int RegularMonths = 6;             // of the window: a material that is expected in the last one too
constexpr std::size_t LeastMedianMonths = 3; // fewer say nothing of what is usual
constexpr double UnusualFactor = 5;
constexpr double LeastDensity = 7; // lb/gal
constexpr double MostDensity = 16; // as in the texts
constexpr double Noise = 1e-9;     // what binary fractions may be off

/// A place in a list, or none: places are counted from 1.
using PlaceOrNone = std::size_t;

struct UseFacts {
    std::optional<MonthNumber> Month{};
    bool IsInWindow = false;
    PlaceOrNone NextOfMaterial = 0;
    PlaceOrNone EarlierOfMonth = 0; ///< another use of the same material and month
};
/// What there is by a material's number.
struct NumberFacts {
    PlaceOrNone Material = 0; ///< the first with the number
    PlaceOrNone OtherMaterial = 0;
    PlaceOrNone FirstUse = 0;
    bool IsInWindow = false;
    bool IsUsed = false; ///< in the window, with a quantity other than 0
    bool IsUsedInMgal = false;
    bool IsEveryQuantityFinite = true;
};
/// A material's use in one month.
struct MonthUse {
    MonthNumber Month = 0;
    std::size_t Use = 0; ///< the first of the month
    double Pounds = 0;
};

/// A month that is in some report's window.
std::optional<MonthNumber> CountedMonth(std::string_view period) {
    const auto month = MonthOfPeriod(period);
    return month && *month > FirstMonthEnd - WindowMonths ? month : std::nullopt;
}

double Median(std::vector<double>& numbers) {
    std::ranges::sort(numbers);
    const std::size_t middle = numbers.size() / 2;
    return numbers.size() % 2 == 1 ? numbers[middle] : (numbers[middle - 1] + numbers[middle]) / 2;
}

std::string_view WhatIsWrongWithContent(double content) {
    if (!std::isfinite(content)) return "is not a finite number: figures with it have no answer";
    if (content < 0) return "is below 0: figures with it come out too low";
    if (content > 100) return "is above 100: figures with it come out too high";
    if (content == 0) return "is 0: its use counts as free of HAP";
    if (content < 1) return "is below 1, like a fraction typed as percent: figures may come out too low";
    return {};
}

std::string_view WhatIsWrongWithFiller(double filler) {
    if (!std::isfinite(filler)) return "is not a finite number: exact figures with it have no answer";
    if (filler < 0) return "is below 0: exact figures come out too high";
    if (filler > 100) return "is above 100: exact figures come out below 0";
    return {};
}

std::string_view WhatIsWrongWithDensity(double density) {
    if (!std::isfinite(density)) return "is not a finite number: its use in Mgal has no answer";
    if (density == 0) return "is 0: its use in Mgal counts as nothing";
    if (density < 0) return "is below 0: its use in Mgal is taken off the sums";
    return {};
}

/// As in "its density 5 is outside".
std::string Of(std::string_view what, double number, std::string_view verdict) {
    std::string text(what);
    AppendAll(text, NumberText(number), " ", verdict);
    return text;
}

class Search {
public:
    /// Without `looks` only what is not trusted is sought.
    Search(const ShopFigures& figures, MonthNumber monthEnd, std::int16_t companyId, bool looks)
        : m_figures(figures), m_shop(figures.Shop()), m_monthEnd(monthEnd), m_seeksLooks(looks),
          m_company(WholeNumberText(companyId)), m_usedAs(m_shop.Materials.size()),
          m_uses(m_shop.Usage.size()) {}

    std::vector<Attention> Run() {
        SortRecords();
        if (m_seeksLooks) LookAtMonths();
        for (std::size_t place = 0; place < m_shop.Materials.size(); ++place)
            LookAtMaterial(place);
        for (std::size_t place = 0; place < m_shop.Usage.size(); ++place)
            LookAtUse(place);
        if (m_seeksLooks) LookAtClosedMolding();
        std::ranges::stable_sort(m_looks, {}, &Attention::Material);
        std::ranges::stable_sort(m_looksAtUse, {}, [](const Attention& look) { return *look.Use; });
        for (std::vector<Attention>* const more : {&m_looks, &m_looksAtUse})
            std::ranges::move(*more, std::back_inserter(m_findings));
        return std::move(m_findings);
    }

private:
    MonthNumber FirstMonth() const { return m_monthEnd - WindowMonths + 1; }
    bool IsInWindow(MonthNumber month) const { return FirstMonth() <= month && month <= m_monthEnd; }
    const UseClass* ClassOfMaterial(std::size_t place) const {
        const auto row = m_figures.RowOf(place);
        return row ? &m_figures.ClassOfRow(*row) : nullptr;
    }
    bool IsUsed(std::size_t place) const { return m_numbers[m_shop.Materials[place].MaterialId].IsUsed; }
    bool IsClosed(std::size_t place) const {
        const UseClass* const its = ClassOfMaterial(place);
        return its && its->Kind == UseKind::ClosedMolding;
    }

    std::string MaterialText(std::size_t place, std::string_view what) const {
        const ShopMaterial& material = m_shop.Materials[place];
        std::string text = m_company;
        AppendAll(text, MaterialsSuffix, ", record ", WholeNumberText(material.Record), ", ",
                  Quoted(material.CustomId), ": ", what);
        return text;
    }
    std::string UseText(std::size_t place, std::string_view what) const {
        const ShopUse& use = m_shop.Usage[place];
        std::string text = m_company;
        AppendAll(text, UsageSuffix, ", record ", WholeNumberText(use.Record));
        const PlaceOrNone material = m_numbers[use.MaterialId].Material;
        if (material) AppendAll(text, ", ", Quoted(m_shop.Materials[material - 1].CustomId));
        if (m_uses[place].Month) AppendAll(text, ", ", MonthText(*m_uses[place].Month));
        AppendAll(text, ": ", what);
        return text;
    }
    void Distrust(std::size_t material, std::string_view what, Reach touches = Reach::All) {
        m_findings.push_back({.Kind = AttentionKind::NotTrusted,
                              .Material = material,
                              .Touches = touches,
                              .Text = MaterialText(material, what)});
    }
    void DistrustUse(std::size_t use, std::string_view what) {
        Attention finding{.Kind = AttentionKind::NotTrusted, .Use = use, .Text = UseText(use, what)};
        const PlaceOrNone material = m_numbers[m_shop.Usage[use].MaterialId].Material;
        if (material) finding.Material = material - 1;
        m_findings.push_back(std::move(finding));
    }
    void Look(std::size_t material, std::string_view what) {
        if (!m_seeksLooks) return;
        m_looks.push_back(
            {.Kind = AttentionKind::WorthALook, .Material = material, .Text = MaterialText(material, what)});
    }

    void SortRecords() {
        for (std::size_t place = 0; place < m_shop.Materials.size(); ++place) {
            NumberFacts& facts = m_numbers[m_shop.Materials[place].MaterialId];
            (facts.Material ? facts.OtherMaterial : facts.Material) = place + 1;
        }
        // From the end, so that each list is in file order.
        for (std::size_t place = m_shop.Usage.size(); place-- > 0;) {
            const ShopUse& record = m_shop.Usage[place];
            NumberFacts& facts = m_numbers[record.MaterialId];
            UseFacts& use = m_uses[place];
            use.Month = CountedMonth(record.Period);
            use.IsInWindow = use.Month ? IsInWindow(*use.Month) : Trim(record.Period).empty();
            use.NextOfMaterial = std::exchange(facts.FirstUse, place + 1);
            if (!use.IsInWindow) continue;
            facts.IsInWindow = true;
            if (!std::isfinite(record.Quantity)) facts.IsEveryQuantityFinite = false;
            if (record.Quantity == 0) continue;
            facts.IsUsed = true;
            if (record.Unit != UnitLbs) facts.IsUsedInMgal = true;
        }
        const std::vector<UsedMaterial> used = m_figures.UsedInWindow(m_monthEnd);
        for (const UsedMaterial& material : used)
            m_usedAs[material.Material] = material;
    }

    void LookAtMonths() {
        const auto start = m_figures.StartMonth();
        if (!start) return;
        for (MonthNumber month = std::max(*start, FirstMonth()); month <= m_monthEnd; ++month)
            if (!m_figures.HasEntry(month))
                m_looks.push_back({.Kind = AttentionKind::WorthALook,
                                   .Month = month,
                                   .Text = m_company + std::string(UsageSuffix) + ": " + MonthText(month) +
                                           " has no entry; whether anything was used then, no record tells"});
    }

    void LookAtMaterial(std::size_t place) {
        const ShopMaterial& material = m_shop.Materials[place];
        const NumberFacts& facts = m_numbers[material.MaterialId];
        const bool isFirst = facts.Material == place + 1;
        if (facts.IsInWindow && isFirst) LookAtMonthsOf(place);
        if (!facts.IsUsed) return;
        if (facts.OtherMaterial) DistrustNumber(place, isFirst ? facts.OtherMaterial : facts.Material);
        const UseClass* const its = ClassOfMaterial(place);
        if (!its)
            Distrust(place, "its type and method, " + Quoted(material.MaterialType) + " and " +
                                Quoted(material.ApplicationMethod) +
                                ", are not in the material-type table: its use counts in no figure");
        LookAtDensity(place, facts.IsUsedInMgal);
        LookAtContent(place, its);
        LookAtFiller(place, its);
        LookAtSum(place, facts);
        if (!m_seeksLooks) return;
        LookAtFactor(place);
        LookAtDescription(place);
    }

    void DistrustNumber(std::size_t place, PlaceOrNone other) {
        const ShopMaterial& material = m_shop.Materials[place];
        Distrust(place, "its number " + WholeNumberText(material.MaterialId) + " is that of record " +
                            WholeNumberText(m_shop.Materials[other - 1].Record) +
                            " too: the same use counts for both");
    }

    void LookAtDensity(std::size_t place, bool isUsedInMgal) {
        const double density = m_shop.Materials[place].Density;
        const std::string_view wrong = WhatIsWrongWithDensity(density);
        if (isUsedInMgal && !wrong.empty())
            Distrust(place, Of("its density ", density, wrong));
        else if (!(LeastDensity <= density && density <= MostDensity))
            Look(place, Of("its density ", density,
                           isUsedInMgal ? "is outside 7 to 16 lb/gal: its pounds follow from it"
                                        : "is outside 7 to 16 lb/gal: no figure of these months needs it, "
                                          "since its use is in lbs"));
    }

    void LookAtContent(std::size_t place, const UseClass* its) {
        if (its && its->Kind == UseKind::ClosedMolding) return;
        const double content = m_shop.Materials[place].HapContent;
        const std::string_view wrong = WhatIsWrongWithContent(content);
        if (!wrong.empty()) Distrust(place, Of("its HAP content ", content, wrong), Reach::AllButAmounts);
        if (!its || !its->IsVacuumBagging || !its->Row) return;
        const TableTwoRow& row = TableTwoRows[*its->Row];
        if (content > row.HapLimit)
            Look(place, Of("its HAP content ", content,
                           "is above " + NumberText(row.HapLimit) + ", the limit of Table 2 for " +
                               std::string(row.Name) + "; limits for vacuum bagging are not in Table 2"));
    }

    void LookAtFiller(std::size_t place, const UseClass* its) {
        if (!its || its->Kind != UseKind::Filled) return;
        const double filler = m_shop.Materials[place].Filler;
        const std::string_view wrong = WhatIsWrongWithFiller(filler);
        if (!wrong.empty())
            Distrust(place, Of("its filler ", filler, wrong), Reach::AllButAmounts);
        else if (filler == 0)
            Look(place, "it is a filled resin with filler 0, as an import leaves it: the exact figures take "
                        "it as neat");
        else
            Look(place, Of("its filler ", filler, "lowers the exact figures, but no report applies it"));
    }

    /// What comes of all its use in the window.
    void LookAtSum(std::size_t place, const NumberFacts& facts) {
        const auto& used = m_usedAs[place];
        if (!used) return;
        const ShopMaterial& material = m_shop.Materials[place];
        if (!std::isfinite(used->Pounds)) {
            // Quantities or a density that are no numbers are findings themselves.
            if (facts.IsEveryQuantityFinite && std::isfinite(material.Density))
                Distrust(place, "its use adds up to more than can be calculated: figures with it have no "
                                "answer");
        } else if (used->MgReport == 0 && !IsClosed(place)) {
            Distrust(place,
                     "its use of " + NumberText(used->Pounds) +
                         " lb in twelve months is 0.00 Mg in the emission average, which leaves it out",
                     Reach::AverageAlone);
        }
    }

    void LookAtFactor(std::size_t place) {
        const double factor = m_shop.Materials[place].EmissionFactor;
        if (factor != 0)
            Look(place, "its alternate emission factor " + NumberText(factor) +
                            " is in no report and no figure; 63.5710(d) wants the equations of Table 3");
    }

    void LookAtDescription(std::size_t place) {
        if (IsClosed(place)) return;
        const std::string description = UpperCase(m_shop.Materials[place].Description);
        constexpr std::pair<std::string_view, std::string_view> words[] = {
            {"REPAIR",     "repair"    },
            {"SKIN COAT",  "skin coat" },
            {"VINYLESTER", "vinylester"}
        };
        for (const auto& [key, word] : words) {
            if (description.find(key) == std::string::npos) continue;
            Look(place, "its description has \"" + std::string(word) +
                            "\": 63.5698(d) may exempt some such use (up to 1 % of gel coat, 5 % of resin); "
                            "the figures count all of it");
            return;
        }
    }

    bool IsCoat(std::size_t place) const {
        const ShopMaterial& material = m_shop.Materials[place];
        const std::string type = UpperCase(material.MaterialType);
        return type.find("GEL") != std::string::npos || type.find("SKIN COAT") != std::string::npos ||
               UpperCase(material.Description).find("SKIN COAT") != std::string::npos;
    }

    void LookAtClosedMolding() {
        std::optional<std::size_t> firstClosed;
        for (std::size_t place = 0; place < m_shop.Materials.size() && !firstClosed; ++place)
            if (IsUsed(place) && IsClosed(place)) firstClosed = place;
        if (!firstClosed) return;
        for (std::size_t place = 0; place < m_shop.Materials.size(); ++place)
            if (IsUsed(place) && !IsClosed(place) && IsCoat(place)) return;
        Look(*firstClosed, "closed molding is used, but no gel coat or skin coat in twelve months: if there "
                           "is any, its use is missing from the figures");
    }

    /// The material's use by month in the whole file, ascending. Notes those in the window that share a
    /// month.
    const std::vector<MonthUse>& UseByMonth(std::size_t material) {
        const ShopMaterial& record = m_shop.Materials[material];
        std::vector<MonthUse>& uses = m_monthUses;
        uses.clear();
        for (PlaceOrNone next = m_numbers[record.MaterialId].FirstUse; next;
             next = m_uses[next - 1].NextOfMaterial) {
            const std::size_t use = next - 1;
            if (!m_uses[use].Month) continue;
            const ShopUse& its = m_shop.Usage[use];
            const Result<double> pounds = ConvertQuantity(its.Quantity, record.Density, its.Unit, UnitLbs);
            uses.push_back({.Month = *m_uses[use].Month, .Use = use, .Pounds = pounds ? *pounds : 0});
        }
        std::ranges::stable_sort(uses, {}, &MonthUse::Month);
        std::size_t months = 0;
        for (const MonthUse& use : uses) {
            if (months == 0 || uses[months - 1].Month != use.Month) {
                uses[months++] = use;
                continue;
            }
            uses[months - 1].Pounds += use.Pounds;
            m_uses[use.Use].EarlierOfMonth = uses[months - 1].Use + 1;
        }
        uses.resize(months);
        return uses;
    }

    void LookAtMonthsOf(std::size_t material) {
        const std::vector<MonthUse>& months = UseByMonth(material);
        if (!m_seeksLooks) return;
        int usedMonths = 0;
        bool isInLastMonth = false;
        m_amounts.clear();
        for (const MonthUse& month : months) {
            if (month.Month == m_monthEnd) isInLastMonth = true;
            if (!(month.Pounds > 0) || !std::isfinite(month.Pounds)) continue;
            m_amounts.push_back(month.Pounds);
            if (IsInWindow(month.Month)) ++usedMonths;
        }
        // A quantity of 0 is an answer too.
        if (usedMonths >= RegularMonths && !isInLastMonth)
            Look(material, "it was used in " + WholeNumberText(usedMonths) +
                               " of the twelve months, but has no entry for " + MonthText(m_monthEnd));
        const std::size_t count = m_amounts.size();
        if (count < LeastMedianMonths) return;
        const double median = Median(m_amounts);
        for (const MonthUse& month : months)
            if (IsInWindow(month.Month) && month.Pounds > 0)
                CompareWithMedian(material, month, median, count);
    }

    void CompareWithMedian(std::size_t material, const MonthUse& month, double median, std::size_t count) {
        const bool isMuch = month.Pounds > median * UnusualFactor * (1 + Noise);
        const bool isLittle = month.Pounds < median / UnusualFactor * (1 - Noise);
        if (!isMuch && !isLittle) return;
        const std::string what = "its month's " + NumberText(month.Pounds) + " lb is " +
                                 (isMuch ? "over five times" : "under a fifth of") + " the median of " +
                                 WholeNumberText(static_cast<std::int64_t>(count)) + " months with use, " +
                                 NumberText(median) + " lb: perhaps Mgal and lbs were mixed up";
        m_looksAtUse.push_back({.Kind = AttentionKind::WorthALook,
                                .Material = material,
                                .Use = month.Use,
                                .Text = UseText(month.Use, what)});
    }

    void LookAtUse(std::size_t place) {
        const ShopUse& use = m_shop.Usage[place];
        const UseFacts& facts = m_uses[place];
        if (!facts.Month) DistrustPeriod(place);
        if (!facts.IsInWindow) return;
        if (!m_numbers[use.MaterialId].Material) {
            DistrustUse(place, "its material " + WholeNumberText(use.MaterialId) +
                                   " does not exist or is deleted: it counts in no figure");
            return;
        }
        if (use.Unit != UnitMgal && use.Unit != UnitLbs)
            DistrustUse(place, "its unit " + WholeNumberText(use.Unit) +
                                   " is neither 1 (Mgal) nor 2 (lbs): it counts as Mgal");
        if (!std::isfinite(use.Quantity))
            DistrustUse(place, "its quantity is not a finite number: figures with it have no answer");
        else if (use.Quantity < 0)
            DistrustUse(place,
                        "its quantity " + NumberText(use.Quantity) + " is below 0: it is taken off the sums");
        if (facts.EarlierOfMonth)
            DistrustUse(place, "its material and month are those of record " +
                                   WholeNumberText(m_shop.Usage[facts.EarlierOfMonth - 1].Record) +
                                   " too: both are added up");
    }

    void DistrustPeriod(std::size_t place) {
        const std::string_view period = Trim(m_shop.Usage[place].Period);
        if (period.empty())
            return DistrustUse(place, "its period is empty: it counts at every month end and in no month");
        const std::string text = "its period " + Quoted(period);
        if (MonthOfPeriod(period)) return DistrustUse(place, text + " is too early for any report");
        // The end of a report's list of months is "1/2005|".
        DistrustUse(place, text + " is not written as in 3/2005: it counts " +
                               (period.ends_with('|') ? "at one month end at most" : "in no figure"));
    }

    const ShopFigures& m_figures;
    const ShopRecords& m_shop;
    const MonthNumber m_monthEnd;
    const bool m_seeksLooks;
    const std::string m_company;
    ByNumber<NumberFacts> m_numbers;
    std::vector<std::optional<UsedMaterial>> m_usedAs; ///< by material
    std::vector<UseFacts> m_uses;                      ///< as ShopRecords::Usage
    // Of one material; kept, so that not each takes memory anew.
    std::vector<MonthUse> m_monthUses;
    std::vector<double> m_amounts;
    std::vector<Attention> m_findings;
    std::vector<Attention> m_looks;
    std::vector<Attention> m_looksAtUse;
};

} // namespace

std::vector<Attention> FindAttention(const ShopFigures& shop, MonthNumber monthEnd, std::int16_t companyId) {
    return Search(shop, monthEnd, companyId, true).Run();
}

std::vector<Attention> FindNotTrusted(const ShopFigures& shop, MonthNumber monthEnd, std::int16_t companyId) {
    return Search(shop, monthEnd, companyId, false).Run();
}
} // namespace mact
