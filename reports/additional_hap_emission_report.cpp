#include "reports/additional_hap_emission_report.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/units.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"

#include <algorithm>
#include <cmath>

namespace mact {
namespace {

// With a blank before the ">", unlike in the other reports.
constexpr std::string_view EmissionTableStartHtml =
    "<table cellspacing='0' cellpadding='3' border='1' bordercolor='black' >";

constexpr std::string_view HeaderRowHtml =
    "<tr><td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Emission (kg/12 "
    "months)</b></font>"
    "</td></tr>";

// Every cell ends in an opening font tag instead of a closing one, on purpose.
std::string RowHtml(const std::string& name, double kilograms) {
    return "<tr><td align='center' valign='top'><font face='Verdana' size='1'>" + name +
           "<font></td><td align='center' valign='top'><font face='Verdana' size='1'>" +
           GroupedText(kilograms) + "<font></td></tr>";
}

std::string TotalRowHtml(double kilograms) {
    return "<tr><td align='right' valign='top'><font face='Verdana' size='1'><b>Total</b><font></td>"
           "<td align='center' valign='top'><font face='Verdana' size='1'><b>" +
           GroupedText(kilograms) + "</b><font></td></tr>";
}

std::string TotalsHtml(const PollutantNames& names, const PollutantTotals& totals) {
    std::string html;
    for (std::size_t slot = 0; slot < PollutantCount; ++slot)
        if (IsUsedName(names[slot])) html += RowHtml(names[slot], totals[slot]);
    return html + TotalRowHtml(TotalOfNamed(names, totals));
}

Result<std::string> BuildPage(const AdditionalHapData& data) {
    const Result<PollutantTotals> totals = AddUpEmissions(data);
    if (!totals) return totals.error();
    return BuildAdditionalHapEmissionHtml(data, *totals);
}

bool IsEveryFinite(const PollutantTotals& totals) {
    return std::ranges::all_of(totals, [](double total) { return std::isfinite(total); });
}

} // namespace

double KilogramsUsed(double pounds) {
    return RoundTo(Kilograms(pounds), 2); // before any emission is calculated from it
}

double PollutantEmission(double content, double kilograms, double factor) {
    // Whole kilograms on purpose, although this drops small amounts.
    return RoundTo(content / 100 * kilograms * (factor / 100), 0);
}

Result<PollutantTotals> AddUpEmissions(const AdditionalHapData& data) {
    PollutantTotals totals{};
    for (const AdditionalHapMaterial& material : data.Materials) {
        const double kilograms = KilogramsUsed(material.Pounds);
        for (std::size_t slot = 0; slot < PollutantCount; ++slot)
            totals[slot] += PollutantEmission(material.Contents[slot], kilograms, material.Factors[slot]);
        if (!IsEveryFinite(totals)) // after each material, so that the failure can name it
            return CannotCalculate("add up the additional HAP emissions of " +
                                   MaterialNamed(material.MaterialId));
    }
    if (!std::isfinite(TotalOfNamed(data.Names, totals)))
        return CannotCalculate("add up the additional HAP emissions of the report");
    return totals;
}

double TotalOfNamed(const PollutantNames& names, const PollutantTotals& totals) {
    double total = 0;
    for (std::size_t slot = 0; slot < PollutantCount; ++slot)
        if (IsUsedName(names[slot])) total += totals[slot];
    return total;
}

std::string BuildAdditionalHapEmissionHtml(const AdditionalHapData& data, const PollutantTotals& totals) {
    std::string html = "<html><title>Additional HAP(s) Emission Report</title><body>";
    html += CompanyHtml(data.Heading);
    html += TitleHtml("ADDITIONAL HAP(s) EMISSION REPORT", MaterialsUsedHtml(data.Heading));
    html += EmissionTableStartHtml;
    html += HeaderRowHtml;
    html += data.HasRecords ? TotalsHtml(data.Names, totals) : std::string(NoRecordFoundRowHtml);
    html += PageEndHtml;
    return html;
}

std::int16_t GenerateAdditionalHapEmissionReport(AppContext& app, const ReportPeriod& period) {
    const Result<AdditionalHapData> data = FetchAdditionalHap(app, period);
    if (data && !data->HasRecords && !UserWantsEmptyReport(app)) return ReportDeclined;
    return PublishReport(app, AdditionalHapEmissionFile, data.and_then(BuildPage));
}
} // namespace mact
