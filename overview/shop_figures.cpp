#include "overview/shop_figures.h"

#include "base/by_number.h"
#include "base/text.h"
#include "materials/point_value.h"
#include "materials/units.h"
#include "overview/window_sums.h"
#include "reports/compliant_materials_report.h"
#include "reports/emission_average_report.h"
#include "reports/type_groups.h"
#include "reports/weighted_average_report.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace mact {
namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Noise = 1e-9; // of a limit: what binary fractions may be off

bool IsTie(double emissions, double allowance) {
    return allowance > 0 && std::abs(allowance - emissions) <= allowance * Noise;
}

/// The first and last month end in whose window a report counts the period, by the text that it looks for.
std::pair<MonthNumber, MonthNumber> WindowsOf(std::string_view period) {
    const std::string_view text = Trim(period);
    if (text.empty()) return {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}; // in all
    if (const auto month = MonthOfPeriod(text)) return {*month, *month + WindowMonths - 1};
    // A report's list of months ends in "|" with the oldest: there, and only there, it finds "1/2005|".
    const std::string_view withoutBar = text.substr(0, text.size() - 1);
    if (text.ends_with('|') && Trim(withoutBar) == withoutBar)
        if (const auto oldest = MonthOfPeriod(withoutBar))
            return {*oldest + WindowMonths - 1, *oldest + WindowMonths - 1};
    return {1, 0}; // in none
}

State TwoStates(bool isOverInReport, bool isOver) {
    if (isOverInReport != isOver) return State::Differs;
    return isOver ? State::Over : State::Within;
}

/// `cause` counts only if the figures do not agree.
Verdict Judge(State state, Cause cause, bool hasAnswer, int months) {
    if (!hasAnswer) return {};
    if (months < WindowMonths) return {.Is = State::TooEarly};
    return {.Is = state, .Why = state == State::Differs ? cause : Cause::None};
}

ContentFigure ContentFigureOf(const ContentSums& sums, std::optional<double> limit, int months) {
    ContentFigure figure{
        .Content = {.Report = ReportedContent(sums), .Exact = ExactContent(sums)},
        .Limit = limit,
        .Pounds = sums.Pounds,
        .IsEveryMaterialWithin = sums.IsEveryMaterialWithin
    };
    const bool isOver = limit && IsAbove(figure.Content.Exact, *limit);
    figure.Judged = Judge(TwoStates(sums.IsOverInReport, isOver),
                          sums.UsesVacuumBagging ? Cause::VacuumBagging : Cause::Rounding,
                          figure.Content.HasAnswer() && (!limit || std::isfinite(*limit)), months);
    return figure;
}

void AddContents(const ShopFigures& shop, const WindowSums& sums, MonthFigures& figures) {
    for (std::size_t row = 0; row < TableTwoRows.size(); ++row) {
        if (!sums.ContentOfRow[row].IsUsed) continue;
        ContentFigure figure =
            ContentFigureOf(sums.ContentOfRow[row], TableTwoRows[row].HapLimit, figures.Months);
        figure.Item = TableTwoRows[row].Name;
        figure.Row = row;
        figures.Contents.push_back(std::move(figure));
    }
    for (std::size_t row = 0; row < sums.ContentOfPair.size(); ++row) {
        if (!sums.ContentOfPair[row].IsUsed) continue;
        const HapContentRecord& type = shop.Shop().Types[row];
        ContentFigure figure = ContentFigureOf(sums.ContentOfPair[row], LimitOf(type), figures.Months);
        figure.Item = PairName(type);
        figure.Pair = row;
        figures.Contents.push_back(std::move(figure));
    }
}

Verdict JudgeAverage(const WindowSums& sums, int months) {
    const Figure& emissions = sums.Emissions;
    const Figure& allowance = sums.Allowance;
    const bool isFinite = emissions.HasAnswer() && allowance.HasAnswer();
    if (isFinite && months >= WindowMonths && !sums.IsAverageUsed) return {.Is = State::NotUsed};
    const bool isTie = IsTie(emissions.Report, allowance.Report) || IsTie(emissions.Exact, allowance.Exact);
    if (isTie) return Judge(State::Differs, Cause::Tie, isFinite, months);
    const bool isOverInReport = emissions.Report > allowance.Report;
    const bool isOverWithoutFiller = IsAbove(sums.EmissionsWithoutFiller, allowance.Exact);
    return Judge(TwoStates(isOverInReport, IsAbove(emissions.Exact, allowance.Exact)),
                 isOverWithoutFiller == isOverInReport ? Cause::Filler : Cause::Rounding, isFinite, months);
}

void AddPointValue(const OperationSums& sums, std::string item, MonthFigures& figures) {
    if (!sums.IsUsed) return;
    PointValueFigure figure{
        .Item = std::move(item), .Exact = sums.KgExact / sums.MgExact, .Limit = sums.Limit};
    if (sums.MgReport != 0) figure.Report = RoundDecimal(sums.KgReport / sums.MgReport, 0);
    figures.PointValues.push_back(std::move(figure));
}

void AddPointValues(const ShopFigures& shop, const WindowSums& sums, MonthFigures& figures) {
    for (std::size_t operation = 0; operation < Operations.size(); ++operation)
        AddPointValue(sums.OperationOf[operation], std::string(Operations[operation]), figures);
    for (std::size_t row = 0; row < sums.OperationOfType.size(); ++row)
        AddPointValue(sums.OperationOfType[row], std::string(Trim(shop.Shop().Types[row].MaterialType)),
                      figures);
}

} // namespace

bool IsAbove(double exact, double limit) {
    return exact > limit + std::abs(limit) * Noise;
}

std::string PairName(const HapContentRecord& row) {
    return std::string(Trim(row.MaterialType)) + ", " + std::string(Trim(row.ApplicationMethod));
}

double UsedMaterial::Megagrams() const {
    return Kilograms(Pounds) / KgPerMg;
}

ShopFigures::ShopFigures(const ShopRecords& shop, std::optional<MonthNumber> start)
    : m_shop(shop), m_givenStart(start) {
    PrepareLines();
    PrepareMaterials();
    TakeUsage();
}

void ShopFigures::TakeUsage() {
    SortUsage();
    FindUses();
    m_start = m_givenStart;
    if (!m_start && !m_entered.empty()) m_start = m_entered.front();
}

void ShopFigures::PrepareLines() {
    std::unordered_map<std::string, std::size_t> firstAdded;
    m_classes.reserve(m_shop.Types.size());
    for (std::size_t row = 0; row < m_shop.Types.size(); ++row) {
        const HapContentRecord& type = m_shop.Types[row];
        m_classes.push_back(ClassOf(type));
        const bool isAdded = m_classes.back().Kind == UseKind::Content && !m_classes.back().Row;
        m_firstAdded.push_back(
            isAdded ? firstAdded.try_emplace(ComparisonKey(type.MaterialType), row).first->second : row);
        if (m_pairs.Add(type.MaterialType, type.ApplicationMethod) == m_rowOfPair.size())
            m_rowOfPair.push_back(row); // a new pair
    }
    for (const TypeGroup& group : GroupByType(m_shop.Types))
        for (const HapContentRecord& row : group.Methods) {
            const auto pair = m_pairs.Find(row.MaterialType, row.ApplicationMethod); // there is one
            m_lines.push_back({row, m_rowOfPair[*pair]});
        }
}

void ShopFigures::SortUsage() {
    std::vector<std::size_t> places(m_shop.Usage.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    // Stable, since the last digits of a sum depend on the order of its terms.
    std::ranges::stable_sort(places, {}, [&](std::size_t place) { return m_shop.Usage[place].MaterialId; });
    m_uses.clear();
    m_uses.reserve(places.size());
    m_entered.clear();
    for (const std::size_t place : places) {
        const std::string& period = m_shop.Usage[place].Period;
        const auto [first, last] = WindowsOf(period);
        m_uses.push_back(
            {.Place = place, .FirstEnd = first, .LastEnd = last, .Month = MonthOfPeriod(period)});
        if (m_uses.back().Month) m_entered.push_back(*m_uses.back().Month);
    }
    std::ranges::sort(m_entered);
    m_entered.erase(std::unique(m_entered.begin(), m_entered.end()), m_entered.end());
}

double ShopFigures::PoundsOf(const Use& use, const ShopMaterial& material) const {
    const ShopUse& record = m_shop.Usage[use.Place];
    const Result<double> pounds = ConvertQuantity(record.Quantity, material.Density, record.Unit, UnitLbs);
    return pounds ? *pounds : NotANumber;
}

void ShopFigures::PrepareMaterials() {
    m_materials.reserve(m_shop.Materials.size());
    std::unordered_set<std::int16_t> numbers;
    for (const ShopMaterial& material : m_shop.Materials) {
        Material& prepared = m_materials.emplace_back();
        prepared.IsFirst = numbers.insert(material.MaterialId).second;
        const auto pair = m_pairs.Find(material.MaterialType, material.ApplicationMethod);
        if (!pair) continue;
        prepared.Row = m_rowOfPair[*pair];
        const HapContentRecord& row = m_shop.Types[*prepared.Row];
        const double pointValue = row.EfCoefficient * std::pow(material.HapContent, row.EfExponent);
        prepared.PointValueWithoutFiller = pointValue;
        prepared.PointValueReport = PointValue(row, material.HapContent);
        const bool isFilled = m_classes[*prepared.Row].Kind == UseKind::Filled;
        prepared.PointValueExact = isFilled ? pointValue * (100 - material.Filler) / 100 : pointValue;
    }
}

void ShopFigures::FindUses() {
    struct Range {
        std::size_t First = 0;
        std::size_t End = 0;
    };
    ByNumber<Range> ranges;
    for (std::size_t use = 0; use < m_uses.size(); ++use) {
        Range& range = ranges[m_shop.Usage[m_uses[use].Place].MaterialId];
        if (range.End == 0) range.First = use;
        range.End = use + 1;
    }
    for (std::size_t place = 0; place < m_materials.size(); ++place) {
        const ShopMaterial& material = m_shop.Materials[place];
        Material& prepared = m_materials[place];
        const Range& range = ranges[material.MaterialId];
        prepared.FirstUse = range.First;
        prepared.EndOfUses = range.End;
        // Once, and not for each month end.
        if (prepared.IsFirst)
            for (std::size_t use = range.First; use < range.End; ++use)
                m_uses[use].Pounds = PoundsOf(m_uses[use], material);
    }
}

std::optional<MonthNumber> ShopFigures::NewestUse() const {
    if (m_entered.empty()) return std::nullopt;
    return m_entered.back();
}

bool ShopFigures::HasEntry(MonthNumber month) const {
    return std::ranges::binary_search(m_entered, month);
}

template <class Counts> std::vector<UsedMaterial> ShopFigures::UsedWhere(const Counts& counts) const {
    std::vector<UsedMaterial> used;
    used.reserve(m_materials.size());
    for (std::size_t number = 0; number < m_materials.size(); ++number) {
        const Material& material = m_materials[number];
        if (!material.Row) continue;
        double pounds = 0;
        for (std::size_t use = material.FirstUse; use < material.EndOfUses; ++use)
            if (counts(m_uses[use])) {
                pounds +=
                    material.IsFirst ? m_uses[use].Pounds : PoundsOf(m_uses[use], m_shop.Materials[number]);
                if (!std::isfinite(pounds)) pounds = NotANumber; // even if a later quantity would cancel it
            }
        if (pounds <= 0) continue;
        const bool isFinite = std::isfinite(pounds);
        used.push_back({.Material = number,
                        .Row = *material.Row,
                        .Pounds = pounds,
                        .KgReport = isFinite ? AmountInKg(pounds) : NotANumber,
                        .MgReport = isFinite ? AmountInMg(pounds) : NotANumber,
                        .PointValueReport = material.PointValueReport,
                        .PointValueExact = material.PointValueExact,
                        .PointValueWithoutFiller = material.PointValueWithoutFiller});
    }
    return used;
}

std::vector<UsedMaterial> ShopFigures::UsedInWindow(MonthNumber monthEnd) const {
    return UsedWhere([&](const Use& use) { return use.FirstEnd <= monthEnd && monthEnd <= use.LastEnd; });
}

std::vector<UsedMaterial> ShopFigures::UsedInMonth(MonthNumber month) const {
    return UsedWhere([&](const Use& use) { return use.Month == month; });
}

std::vector<std::size_t> ShopFigures::UsesInWindow(std::size_t material, MonthNumber monthEnd) const {
    std::vector<std::size_t> places;
    for (std::size_t use = m_materials[material].FirstUse; use < m_materials[material].EndOfUses; ++use)
        if (m_uses[use].FirstEnd <= monthEnd && monthEnd <= m_uses[use].LastEnd)
            places.push_back(m_uses[use].Place);
    return places;
}

int ShopFigures::MonthsUntil(MonthNumber monthEnd) const {
    if (!m_start || m_entered.empty()) return 0;
    return std::clamp(monthEnd - *m_start + 1, 0, WindowMonths);
}

std::vector<MonthNumber> ShopFigures::MonthsWithoutEntry(MonthNumber monthEnd) const {
    std::vector<MonthNumber> months;
    for (MonthNumber month = monthEnd - WindowMonths + 1; month <= monthEnd; ++month)
        if (m_start && month >= *m_start && !HasEntry(month)) months.push_back(month);
    return months;
}

void ShopFigures::AddFilled(const std::vector<UsedMaterial>& used, MonthFigures& figures) const {
    for (const UsedMaterial& material : used) {
        if (m_classes[material.Row].Kind != UseKind::Filled) continue;
        const HapContentRecord& row = m_shop.Types[material.Row];
        const double limit = row.EmissionLimit;
        const bool isOverInReport = !IsCompliant(CompliantRow{
            .HapContent = m_shop.Materials[material.Material].HapContent, .HapLimit = LimitOf(row)});
        const bool isOverWithoutFiller = IsAbove(material.PointValueWithoutFiller, limit);
        const bool hasAnswer =
            std::isfinite(material.PointValueExact) && std::isfinite(limit) && std::isfinite(material.Pounds);
        figures.Filled.push_back(
            {.Material = material.Material,
             .PointValue = hasAnswer ? material.PointValueExact : NotANumber,
             .Limit = limit,
             .Judged = Judge(TwoStates(isOverInReport, IsAbove(material.PointValueExact, limit)),
                             isOverWithoutFiller == isOverInReport ? Cause::Filler : Cause::Rounding,
                             hasAnswer, figures.Months)});
    }
}

void ShopFigures::AddAmounts(MonthFigures& figures) const {
    std::array<double, TableTwoRows.size()> ofRow{};
    std::vector<double> ofPair(m_shop.Types.size(), 0);
    double ofFilledProduction = 0;
    double ofFilledTooling = 0;
    double ofClosedMolding = 0;
    for (const UsedMaterial& used : UsedInMonth(figures.MonthEnd)) {
        const UseClass& its = m_classes[used.Row];
        double& amount =
            its.Kind == UseKind::ClosedMolding ? ofClosedMolding
            : its.Kind == UseKind::Filled
                ? (its.Operation == ProductionResinOperation ? ofFilledProduction : ofFilledTooling)
            : its.Row ? ofRow[*its.Row]
                      : ofPair[used.Row];
        amount += Kilograms(used.Pounds);
    }
    const auto add = [&](std::string item, double kilograms) {
        if (kilograms != 0) figures.Amounts.push_back({std::move(item), kilograms});
    };
    for (std::size_t row = 0; row < ofRow.size(); ++row)
        add(std::string(TableTwoRows[row].Name), ofRow[row]);
    for (std::size_t row = 0; row < ofPair.size(); ++row)
        add(PairName(m_shop.Types[row]), ofPair[row]);
    add("production resin, filled", ofFilledProduction);
    add("tooling resin, filled", ofFilledTooling);
    add("closed molding", ofClosedMolding);
}

MonthFigures ShopFigures::At(MonthNumber monthEnd) const {
    MonthFigures figures{
        .MonthEnd = monthEnd, .Months = MonthsUntil(monthEnd), .WithoutEntry = MonthsWithoutEntry(monthEnd)};
    const std::vector<UsedMaterial> used = UsedInWindow(monthEnd);
    const WindowSums sums = SumsOf(*this, used);
    figures.IsUsed = !used.empty();
    AddContents(*this, sums, figures);
    AddFilled(used, figures);
    figures.Average = {.Emissions = sums.Emissions,
                       .Allowance = sums.Allowance,
                       .Judged = JudgeAverage(sums, figures.Months)};
    AddPointValues(*this, sums, figures);
    AddAmounts(figures);
    return figures;
}
} // namespace mact
