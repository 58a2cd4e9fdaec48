#include "overview/untrusted_figures.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>

namespace mact {
namespace {

/// Where a figure is in its list, by what the list is sorted by.
using Places = std::unordered_map<std::size_t, std::size_t>;

/// False if the figure is not in the list.
bool CountAt(const Places& places, std::size_t key, std::vector<std::size_t>& counts) {
    const auto place = places.find(key);
    if (place == places.end()) return false;
    ++counts[place->second];
    return true;
}

class Counter {
public:
    Counter(const ShopFigures& shop, const MonthFigures& figures) : m_shop(shop), m_figures(figures) {
        m_counts.Contents.resize(figures.Contents.size());
        m_counts.Filled.resize(figures.Filled.size());
        m_counts.PointValues.resize(figures.PointValues.size());
        m_counts.Amounts.resize(figures.Amounts.size());
        FindContents();
        FindPointValues();
        for (std::size_t place = 0; place < figures.Filled.size(); ++place)
            m_filled.emplace(figures.Filled[place].Material, place);
        for (std::size_t place = 0; place < figures.Amounts.size(); ++place)
            m_amounts.emplace(figures.Amounts[place].Item, place);
    }

    void Add(const Attention& finding) {
        if (finding.Material && finding.Touches == Reach::All) ++m_counts.AmountOfMaterial[*finding.Material];
        const auto row = finding.Material ? m_shop.RowOf(*finding.Material) : std::nullopt;
        if (!row)
            AddOfNoRow(finding);
        else
            AddOfRow(finding, *row);
    }

    UntrustedFigures Finish() {
        for (std::size_t& count : m_counts.Contents)
            count += m_ofAnyContent;
        for (std::size_t& count : m_counts.PointValues)
            count += m_ofAnyPointValue;
        for (std::size_t& count : m_counts.Amounts)
            count += m_ofAnyAmount;
        return std::move(m_counts);
    }

private:
    /// Table 2's rows, then the pairs that a user added.
    static std::size_t ContentKey(const UseClass& its, std::size_t row) {
        return its.Row ? *its.Row : TableTwoRows.size() + row;
    }
    /// The operations, then the types that a user added, by their first row.
    std::size_t PointValueKey(const UseClass& its, std::size_t row) const {
        if (its.Operation) return *its.Operation;
        return Operations.size() + m_firstAddedRows.at(ComparisonKey(m_shop.Shop().Types[row].MaterialType));
    }
    std::string AmountItem(const UseClass& its, std::size_t row) const {
        if (its.Kind == UseKind::ClosedMolding) return "closed molding";
        if (its.Kind == UseKind::Filled && its.Operation)
            return std::string(Operations[*its.Operation]) + ", filled";
        return its.Row ? std::string(TableTwoRows[*its.Row].Name) : PairName(m_shop.Shop().Types[row]);
    }

    void FindContents() {
        for (std::size_t place = 0; place < m_figures.Contents.size(); ++place) {
            const ContentFigure& content = m_figures.Contents[place];
            if (content.Row) m_contents.emplace(*content.Row, place);
            if (content.Pair) m_contents.emplace(TableTwoRows.size() + *content.Pair, place);
        }
    }

    /// These have names alone, but stand in the order of their keys.
    void FindPointValues() {
        const std::vector<HapContentRecord>& types = m_shop.Shop().Types;
        for (std::size_t row = 0; row < types.size(); ++row) {
            const UseClass& its = m_shop.ClassOfRow(row);
            if (its.Kind == UseKind::Content && !its.Operation)
                m_firstAddedRows.emplace(ComparisonKey(types[row].MaterialType), row);
        }
        std::map<std::size_t, std::size_t> used;
        for (const UsedMaterial& material : m_shop.UsedInWindow(m_figures.MonthEnd)) {
            const UseClass& its = m_shop.ClassOfRow(material.Row);
            if (its.Kind != UseKind::ClosedMolding) used.emplace(PointValueKey(its, material.Row), 0);
        }
        std::size_t place = 0;
        for (const auto& [key, unused] : used)
            m_pointValues.emplace(key, place++);
    }

    /// Whether the finding is about use of the last month or of no month.
    bool IsInAmounts(const Attention& finding) const {
        if (finding.Touches != Reach::All) return false;
        const auto mayCount = [&](std::size_t use) {
            const auto month = MonthOfPeriod(m_shop.Shop().Usage[use].Period);
            const bool isInSomeReport = month && *month > FirstMonthEnd - WindowMonths;
            return !isInSomeReport || *month == m_figures.MonthEnd;
        };
        if (finding.Use) return mayCount(*finding.Use);
        if (!finding.Material) return false;
        return std::ranges::any_of(m_shop.UsesInWindow(*finding.Material, m_figures.MonthEnd), mayCount);
    }

    void AddOfNoRow(const Attention& finding) {
        ++m_counts.Average;
        ++m_ofAnyContent;
        if (!m_counts.Contents.empty()) ++m_counts.AnyContent;
        ++m_ofAnyPointValue;
        if (IsInAmounts(finding)) ++m_ofAnyAmount;
    }

    void AddOfRow(const Attention& finding, std::size_t row) {
        const UseClass& its = m_shop.ClassOfRow(row);
        if (IsInAmounts(finding)) {
            const auto place = m_amounts.find(AmountItem(its, row));
            if (place != m_amounts.end()) ++m_counts.Amounts[place->second];
        }
        if (its.Kind == UseKind::ClosedMolding) return;
        ++m_counts.Average;
        CountAt(m_pointValues, PointValueKey(its, row), m_counts.PointValues);
        if (finding.Touches == Reach::AverageAlone) return;
        const bool isInContents =
            its.Kind == UseKind::Content && CountAt(m_contents, ContentKey(its, row), m_counts.Contents);
        const bool isInFilled = CountAt(m_filled, *finding.Material, m_counts.Filled);
        if (isInContents || isInFilled) ++m_counts.AnyContent;
    }

    const ShopFigures& m_shop;
    const MonthFigures& m_figures;
    std::unordered_map<std::string, std::size_t> m_firstAddedRows; ///< by type, as compared
    Places m_contents;
    Places m_filled; ///< by material
    Places m_pointValues;
    std::unordered_map<std::string, std::size_t> m_amounts;
    UntrustedFigures m_counts;
    // Added at the end: there may be as many findings as figures.
    std::size_t m_ofAnyContent = 0;
    std::size_t m_ofAnyPointValue = 0;
    std::size_t m_ofAnyAmount = 0;
};

} // namespace

UntrustedFigures CountUntrusted(const ShopFigures& shop, const MonthFigures& figures,
                                const std::vector<Attention>& findings) {
    Counter counter(shop, figures);
    for (const Attention& finding : findings)
        if (finding.Kind == AttentionKind::NotTrusted) counter.Add(finding);
    return counter.Finish();
}

UntrustedFigures CountUntrusted(const ShopFigures& shop, const MonthFigures& figures) {
    constexpr std::int16_t anyCompany = 1; // its number is in the findings' texts alone
    return CountUntrusted(shop, figures, FindNotTrusted(shop, figures.MonthEnd, anyCompany));
}

std::vector<std::size_t> FindingsOfLines(const UntrustedFigures& untrusted) {
    std::vector<std::size_t> findings{0};
    const auto append = [&](const std::vector<std::size_t>& counts) {
        findings.insert(findings.end(), counts.begin(), counts.end());
    };
    append(untrusted.Contents);
    append(untrusted.Filled);
    findings.insert(findings.end(), 4, untrusted.Average); // emissions, allowance and both headrooms
    append(untrusted.PointValues);
    append(untrusted.Amounts);
    return findings;
}

std::string UntrustedText(std::size_t findings) {
    if (findings == 0) return {};
    return "not trusted: " + Counted(findings, "finding");
}

std::string UntrustedSentence(std::size_t findings) {
    if (findings == 0) return {};
    return " N" + UntrustedText(findings).substr(1) + '.';
}
} // namespace mact
