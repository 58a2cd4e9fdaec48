#include "overview/window_sums.h"

#include "base/text.h"
#include "materials/point_value.h"
#include "reports/emission_average_report.h"
#include "reports/weighted_average_report.h"

namespace mact {
namespace {

/// What a line of the averaging reports adds up.
struct LineSums {
    bool IsUsed = false;
    double Kg = 0;
    double KgOfHap = 0;
    double Mg = 0;
    double Emission = 0;
};

void AddTo(ContentSums& sums, const UsedMaterial& used, double hapContent) {
    sums.IsUsed = true;
    sums.Kg += used.KgReport;
    sums.KgOfHap += used.KgReport * hapContent / 100;
    sums.Pounds += used.Pounds;
    sums.PoundsOfHap += used.Pounds * hapContent;
}

void AddTo(OperationSums& sums, const UsedMaterial& used, double limit) {
    if (!sums.IsUsed) sums.Limit = limit;
    sums.IsUsed = true;
    sums.MgReport += used.MgReport;
    sums.KgReport += used.PointValueReport * used.MgReport;
    sums.MgExact += used.Megagrams();
    sums.KgExact += used.PointValueExact * used.Megagrams();
}

class Adder {
public:
    explicit Adder(const ShopFigures& figures) : m_figures(figures), m_types(figures.Shop().Types) {
        m_sums.ContentOfPair.resize(m_types.size());
        m_sums.OperationOfType.resize(m_types.size());
        m_linesOfRow.resize(m_types.size());
        m_lines.resize(figures.Lines().size());
        for (std::size_t line = 0; line < m_lines.size(); ++line)
            m_linesOfRow[figures.Lines()[line].FirstRow].push_back(line);
    }

    void Add(const UsedMaterial& used) {
        const UseClass& its = m_figures.ClassOfRow(used.Row);
        if (its.Kind == UseKind::ClosedMolding) return;
        AddToLines(used);
        if (its.Kind == UseKind::Content) AddToContent(used, its);
        const double limit = m_types[used.Row].EmissionLimit;
        AddTo(its.Operation ? m_sums.OperationOf[*its.Operation]
                            : m_sums.OperationOfType[m_figures.FirstAddedRowOfType(used.Row)],
              used, limit);
        m_sums.IsAverageUsed = true;
        m_sums.Emissions.Exact += used.PointValueExact * used.Megagrams();
        m_sums.Allowance.Exact += limit * used.Megagrams();
        m_sums.EmissionsWithoutFiller += used.PointValueWithoutFiller * used.Megagrams();
    }

    /// In the order of the reports, since the last digits of a sum depend on it.
    WindowSums Finish() {
        for (std::size_t line = 0; line < m_lines.size(); ++line) {
            const LineSums& sums = m_lines[line];
            if (!sums.IsUsed) continue;
            const ReportLine& shown = m_figures.Lines()[line];
            m_sums.Emissions.Report += sums.Emission;
            m_sums.Allowance.Report += sums.Mg * shown.Row.EmissionLimit;
            const UseClass& its = m_figures.ClassOfRow(shown.FirstRow);
            if (its.Kind != UseKind::Content) continue;
            if (!IsCompliant(WeightedAverageRow{
                    .Amount = sums.Kg, .Hap = sums.KgOfHap, .HapLimit = LimitOf(shown.Row)}))
                ContentOf(its, shown.FirstRow).IsOverInReport = true;
        }
        return std::move(m_sums);
    }

private:
    ContentSums& ContentOf(const UseClass& its, std::size_t row) {
        return its.Row ? m_sums.ContentOfRow[*its.Row] : m_sums.ContentOfPair[row];
    }

    void AddToContent(const UsedMaterial& used, const UseClass& its) {
        const double content = m_figures.Shop().Materials[used.Material].HapContent;
        ContentSums& sums = ContentOf(its, used.Row);
        AddTo(sums, used, content);
        if (its.IsVacuumBagging) sums.UsesVacuumBagging = true;
        const std::optional<double> limit =
            its.Row ? TableTwoRows[*its.Row].HapLimit : LimitOf(m_types[used.Row]);
        if (limit && !(content <= *limit)) sums.IsEveryMaterialWithin = false;
    }

    void AddToLines(const UsedMaterial& used) {
        const double content = m_figures.Shop().Materials[used.Material].HapContent;
        for (const std::size_t line : m_linesOfRow[used.Row]) {
            LineSums& sums = m_lines[line];
            sums.IsUsed = true;
            sums.Kg += used.KgReport;
            sums.KgOfHap += used.KgReport * content / 100;
            sums.Mg += used.MgReport;
            // A second line of the same type and method may have an equation of its own.
            const double pointValue = m_linesOfRow[used.Row].size() == 1
                                          ? used.PointValueReport
                                          : PointValue(m_figures.Lines()[line].Row, content);
            sums.Emission += pointValue * used.MgReport;
        }
    }

    const ShopFigures& m_figures;
    const std::vector<HapContentRecord>& m_types;
    std::vector<std::vector<std::size_t>> m_linesOfRow;
    std::vector<LineSums> m_lines;
    WindowSums m_sums;
};

} // namespace

double ReportedContent(const ContentSums& sums) {
    return WeightedContent({.Amount = sums.Kg, .Hap = sums.KgOfHap});
}

double ExactContent(const ContentSums& sums) {
    return sums.PoundsOfHap / sums.Pounds;
}

WindowSums SumsOf(const ShopFigures& figures, const std::vector<UsedMaterial>& used) {
    Adder adder(figures);
    for (const UsedMaterial& material : used)
        adder.Add(material);
    return adder.Finish();
}
} // namespace mact
