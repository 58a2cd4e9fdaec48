#include "overview/trace_answers.h"

#include "base/numbers.h"
#include "materials/point_value.h"
#include "materials/units.h"
#include "overview/overview_csv.h"
#include "overview/trace_parts.h"
#include "overview/window_sums.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <unordered_map>
#include <utility>

namespace mact {
namespace {

class Tracer {
public:
    Tracer(const ShopFigures& shop, const MonthFigures& figures) : m_shop(shop), m_figures(figures) {}

    TracedAnswer AnswerOf(std::string_view figure, std::size_t number) const {
        if (figure == "months") return Months();
        if (figure == "content") return Content(m_figures.Contents[number]);
        if (figure == "filled") return Filled(m_figures.Filled[number]);
        if (figure == "point_value") return PointValueOf(number);
        if (figure == "amount") return Amount(number);
        return Average(figure);
    }

private:
    TracedAnswer Months() const;
    TracedAnswer Content(const ContentFigure& content) const;
    TracedAnswer Filled(const FilledFigure& filled) const;
    TracedAnswer PointValueOf(std::size_t number) const;
    TracedAnswer Amount(std::size_t number) const;
    TracedAnswer Average(std::string_view figure) const;
    TraceNode ReportLines(const std::vector<UsedMaterial>& used, AverageFigures& average) const;

    const UseClass& ClassOf(const UsedMaterial& used) const { return m_shop.ClassOfRow(used.Row); }
    const HapContentRecord& RowOf(const UsedMaterial& used) const { return m_shop.Shop().Types[used.Row]; }
    const ShopMaterial& MaterialOf(const UsedMaterial& used) const {
        return m_shop.Shop().Materials[used.Material];
    }
    TraceNode Node(const UsedMaterial& used, const std::vector<std::string>& calculations) const {
        return MaterialNode(m_shop, used, calculations, m_figures.MonthEnd, false);
    }
    template <class Counts> std::vector<UsedMaterial> UsedWhere(const Counts& counts) const {
        std::vector<UsedMaterial> used = m_shop.UsedInWindow(m_figures.MonthEnd);
        std::erase_if(used, [&](const UsedMaterial& each) { return !counts(each); });
        return used;
    }
    /// Those of the n-th used group of materials, when groups are in the order of their keys.
    template <class KeyOf>
    static std::vector<UsedMaterial> GroupOf(std::vector<UsedMaterial> used, std::size_t number,
                                             const KeyOf& keyOf) {
        std::set<std::size_t> keys;
        for (const UsedMaterial& each : used)
            keys.insert(keyOf(each));
        const std::size_t key = *std::next(keys.begin(), static_cast<std::ptrdiff_t>(number));
        std::erase_if(used, [&](const UsedMaterial& each) { return keyOf(each) != key; });
        return used;
    }

    const ShopFigures& m_shop;
    const MonthFigures& m_figures;
};

TracedAnswer Tracer::Months() const {
    const std::optional<MonthNumber> start = m_shop.StartMonth();
    if (!start || !m_shop.NewestUse())
        return {.Report = "0", .Formulas = {"No month counts, since no live usage record has one."}};
    TracedAnswer answer;
    answer.Formulas.push_back(LineOf("Months from the start month, ", MonthText(*start), ", to ",
                                     MonthText(m_figures.MonthEnd), "; at most 12 count"));
    const MonthNumber first = std::max(*start, m_figures.MonthEnd - WindowMonths + 1);
    for (MonthNumber month = first; month <= m_figures.MonthEnd; ++month)
        answer.Parts.push_back(
            {.Text = MonthText(month) + (m_shop.HasEntry(month) ? ": 1" : ": 1, without entry")});
    std::unordered_map<std::int16_t, const ShopMaterial*> materials;
    for (const ShopMaterial& material : m_shop.Shop().Materials)
        materials.emplace(material.MaterialId, &material);
    const std::vector<ShopUse>& usage = m_shop.Shop().Usage;
    for (std::size_t place = 0; place < usage.size(); ++place) {
        const ShopUse& use = usage[place];
        const std::optional<MonthNumber> month = MonthOfPeriod(use.Period);
        if (!month || *month < first || *month > m_figures.MonthEnd) continue;
        const auto material = materials.find(use.MaterialId);
        const std::string name = material == materials.end() ? LineOf("no live material has the number ",
                                                                      WholeNumberText(use.MaterialId))
                                                             : TracedText(material->second->CustomId);
        answer.Parts[static_cast<std::size_t>(*month - first)].Children.push_back(
            {.Text = LineOf(UseText(m_shop.Shop(), use), " (", name, ")"), .Use = place});
    }
    answer.Report = WholeNumberText(static_cast<std::int64_t>(answer.Parts.size()));
    return answer;
}

TracedAnswer Tracer::Content(const ContentFigure& content) const {
    const std::vector<UsedMaterial> used = UsedWhere([&](const UsedMaterial& each) {
        const UseClass& its = ClassOf(each);
        if (its.Kind != UseKind::Content) return false;
        return content.Row ? its.Row == content.Row : each.Row == content.Pair;
    });
    TracedAnswer answer;
    ContentSums sums;
    for (const UsedMaterial& each : used) {
        const double percent = MaterialOf(each).HapContent;
        sums.Kg += each.KgReport;
        sums.KgOfHap += each.KgReport * percent / 100;
        sums.Pounds += each.Pounds;
        sums.PoundsOfHap += each.Pounds * percent;
        answer.Parts.push_back(
            Node(each, {LineOf("Report: a = round2(", TracedNumber(each.Pounds),
                               " / 2.2046) = ", TracedNumber(each.KgReport),
                               " kg; a * h / 100 = ", TracedNumber(each.KgReport * percent / 100), " kg"),
                        LineOf("Exact: lb * h = ", TracedNumber(each.Pounds), " * ", TracedNumber(percent),
                               " = ", TracedNumber(each.Pounds * percent))}));
    }
    const double report = ReportedContent(sums);
    const double exact = ExactContent(sums);
    answer.Report = ReportText(report);
    answer.Exact = ExactText(exact);
    answer.Formulas = {
        sums.Kg == 0 ? "Report: 0, since the sum of a is 0"
                     : LineOf("Report: round2((sum of a * h / 100) / (sum of a) * 100) = round2(",
                              TracedNumber(sums.KgOfHap), " / ", TracedNumber(sums.Kg),
                              " * 100) = ", TracedNumber(report), " %"),
        LineOf("Exact: (sum of lb * h) / (sum of lb) = ", TracedNumber(sums.PoundsOfHap), " / ",
               TracedNumber(sums.Pounds), " = ", TracedNumber(exact), " %"),
    };
    return answer;
}

TracedAnswer Tracer::Filled(const FilledFigure& filled) const {
    TracedAnswer answer;
    for (const UsedMaterial& used :
         UsedWhere([&](const UsedMaterial& each) { return each.Material == filled.Material; })) {
        answer.Formulas = {LineOf("Exact: c * h^e * (100 - f) / 100 = ", ExactPointValueFormula(m_shop, used),
                                  " = ", TracedNumber(used.PointValueExact), " kg/Mg")};
        const bool hasAnswer = std::isfinite(used.Pounds) && std::isfinite(RowOf(used).EmissionLimit);
        answer.Exact = hasAnswer ? ExactText(used.PointValueExact) : std::string();
        answer.Parts.push_back(Node(used, {}));
    }
    return answer;
}

TracedAnswer Tracer::PointValueOf(std::size_t number) const {
    const std::vector<UsedMaterial> used = GroupOf(
        UsedWhere([&](const UsedMaterial& each) { return ClassOf(each).Kind != UseKind::ClosedMolding; }),
        number, [&](const UsedMaterial& each) {
            const UseClass& its = ClassOf(each);
            return its.Operation ? *its.Operation : Operations.size() + m_shop.FirstAddedRowOfType(each.Row);
        });
    TracedAnswer answer;
    OperationSums sums;
    for (const UsedMaterial& each : used) {
        sums.MgReport += each.MgReport;
        sums.KgReport += each.PointValueReport * each.MgReport;
        sums.MgExact += each.Megagrams();
        sums.KgExact += each.PointValueExact * each.Megagrams();
        answer.Parts.push_back(
            Node(each, {ReportEmissionText(m_shop, each), ExactEmissionText(m_shop, each)}));
    }
    const double exact = sums.KgExact / sums.MgExact;
    answer.Exact = ExactText(exact);
    if (sums.MgReport == 0) {
        answer.Formulas = {"Report: none, since the sum of m is 0"};
    } else {
        const double report = RoundDecimal(sums.KgReport / sums.MgReport, 0);
        answer.Report = ReportText(report);
        answer.Formulas = {LineOf("Report: round2((sum of p * m) / (sum of m)) = round2(",
                                  TracedNumber(sums.KgReport), " / ", TracedNumber(sums.MgReport),
                                  ") = ", TracedNumber(report), " kg/Mg")};
    }
    answer.Formulas.push_back(LineOf("Exact: (sum of p * m) / (sum of m) = ", TracedNumber(sums.KgExact),
                                     " / ", TracedNumber(sums.MgExact), " = ", TracedNumber(exact),
                                     " kg/Mg"));
    return answer;
}

TracedAnswer Tracer::Amount(std::size_t number) const {
    const std::size_t afterPairs = TableTwoRows.size() + m_shop.Shop().Types.size();
    std::vector<UsedMaterial> inMonth = m_shop.UsedInMonth(m_figures.MonthEnd);
    // The smallest of numbers is none of kilograms.
    std::erase_if(inMonth, [](const UsedMaterial& each) { return Kilograms(each.Pounds) == 0; });
    const std::vector<UsedMaterial> used = GroupOf(std::move(inMonth), number, [&](const UsedMaterial& each) {
        const UseClass& its = ClassOf(each);
        if (its.Kind == UseKind::ClosedMolding) return afterPairs + 2;
        if (its.Kind == UseKind::Filled)
            return its.Operation == ProductionResinOperation ? afterPairs : afterPairs + 1;
        return its.Row ? *its.Row : TableTwoRows.size() + each.Row;
    });
    TracedAnswer answer;
    double kilograms = 0;
    for (const UsedMaterial& each : used) {
        kilograms += Kilograms(each.Pounds);
        answer.Parts.push_back(MaterialNode(m_shop, each,
                                            {LineOf("Exact: ", TracedNumber(each.Pounds), " / 2.2046 = ",
                                                    TracedNumber(Kilograms(each.Pounds)), " kg")},
                                            m_figures.MonthEnd, true));
    }
    answer.Exact = ExactText(kilograms);
    answer.Formulas = {LineOf("Exact: sum of lb / 2.2046 = ", TracedNumber(kilograms), " kg")};
    return answer;
}

/// The materials by the lines of the emission-average report, whose sums have its order. Adds the report's
/// figures to `average`.
TraceNode Tracer::ReportLines(const std::vector<UsedMaterial>& used, AverageFigures& average) const {
    std::vector<std::vector<const UsedMaterial*>> ofRow(m_shop.Shop().Types.size());
    for (const UsedMaterial& each : used)
        ofRow[each.Row].push_back(&each);
    TraceNode report{.Text = "Report, by the lines of the emission-average report"};
    for (const ReportLine& line : m_shop.Lines()) {
        if (ofRow[line.FirstRow].empty()) continue;
        TraceNode node;
        double emissions = 0;
        double megagrams = 0;
        for (const UsedMaterial* each : ofRow[line.FirstRow]) {
            // A second line of the same type and method may have an equation of its own.
            const double pointValue = PointValue(line.Row, MaterialOf(*each).HapContent);
            emissions += pointValue * each->MgReport;
            megagrams += each->MgReport;
            node.Children.push_back(
                {.Text = LineOf(TracedText(MaterialOf(*each).CustomId),
                                ": p * m = ", TracedNumber(pointValue), " * ", TracedNumber(each->MgReport),
                                " = ", TracedNumber(pointValue * each->MgReport), " kg"),
                 .Material = each->Material});
        }
        const double limit = line.Row.EmissionLimit;
        node.Text = LineOf(TracedText(line.Row.MaterialType), ", ", TracedText(line.Row.ApplicationMethod),
                           ": sum of p * m = ", TracedNumber(emissions),
                           " kg; (sum of m) * K = ", TracedNumber(megagrams), " * ", TracedNumber(limit),
                           " = ", TracedNumber(megagrams * limit), " kg");
        average.Emissions.Report += emissions;
        average.Allowance.Report += megagrams * limit;
        report.Children.push_back(std::move(node));
    }
    return report;
}

/// A figure of the average, as text and with the formula that has led to it.
TracedAnswer AverageAnswer(std::string_view figure, const AverageFigures& average) {
    const Figure& emissions = average.Emissions;
    const Figure& allowance = average.Allowance;
    const auto ofSums = [](const Figure& sum, std::string_view formula) {
        return TracedAnswer{
            .Report = RoundedText(sum.Report),
            .Exact = ExactText(sum.Exact),
            .Formulas = {LineOf("Report: round2(", formula, ") = round2(", TracedNumber(sum.Report),
                         ") = ", TracedNumber(RoundTo(sum.Report, 2)), " kg"),
                         LineOf("Exact: ", formula, " = ", TracedNumber(sum.Exact), " kg")}
        };
    };
    if (figure == "emissions") return ofSums(emissions, "sum of p * m");
    if (figure == "allowance") return ofSums(allowance, "sum of K * m");
    const bool isPercent = figure == "headroom_percent";
    const Figure left = isPercent ? average.HeadroomPercent() : average.Headroom();
    const std::string_view formula = isPercent ? "(L - E) / L * 100" : "L - E";
    const auto filledIn = [&](double limit, double emitted) {
        const std::string difference = LineOf(TracedNumber(limit), " - ", TracedNumber(emitted));
        return isPercent ? LineOf("(", difference, ") / ", TracedNumber(limit), " * 100") : difference;
    };
    const std::string_view unit = isPercent ? " %" : " kg";
    return {
        .Report = ReportText(left.Report),
        .Exact = ExactText(left.Exact),
        .Formulas = {LineOf("L, the allowance, is the sum of K * m; E, the emissions, that of p * m"),
                     LineOf("Report: round2(", formula, ") = round2(",
                     filledIn(allowance.Report, emissions.Report), ") = ", TracedNumber(left.Report),
                     unit),
                     LineOf("Exact: ", formula, " = ", filledIn(allowance.Exact, emissions.Exact), " = ",
                     TracedNumber(left.Exact), unit)}
    };
}

TracedAnswer Tracer::Average(std::string_view figure) const {
    const std::vector<UsedMaterial> used =
        UsedWhere([&](const UsedMaterial& each) { return ClassOf(each).Kind != UseKind::ClosedMolding; });
    AverageFigures average;
    std::vector<TraceNode> parts;
    for (const UsedMaterial& each : used) {
        average.Emissions.Exact += each.PointValueExact * each.Megagrams();
        average.Allowance.Exact += RowOf(each).EmissionLimit * each.Megagrams();
        parts.push_back(Node(each, {ReportEmissionText(m_shop, each), ExactEmissionText(m_shop, each)}));
    }
    parts.push_back(ReportLines(used, average));
    TracedAnswer answer = AverageAnswer(figure, average);
    answer.Parts = std::move(parts);
    return answer;
}

} // namespace

TracedAnswer TraceAnswer(const ShopFigures& shop, const MonthFigures& figures, std::string_view figure,
                         std::size_t number) {
    return Tracer(shop, figures).AnswerOf(figure, number);
}
} // namespace mact
