#include "reports/additional_hap_emission_report.h"

#include "base/numbers.h"
#include "base/text.h"
#include "reports/period_usage.h"
#include "reports/reports.h"

#include <algorithm>
#include <cmath>

namespace mact {
namespace {

// With a blank before its end, unlike the tables of the other reports.
constexpr std::string_view EmissionTableStartHtml =
    "<table cellspacing='0' cellpadding='3' border='1' bordercolor='black' >";

constexpr std::string_view HeaderRowHtml =
    "<tr><td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Emission (kg/12 "
    "months)</b></font>"
    "</td></tr>";

// Every cell ends in an opening font tag where a closing one would be: so the page has always been.
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

bool IsEveryFinite(const PollutantTotals& totals) {
    return std::ranges::all_of(totals, [](double total) { return std::isfinite(total); });
}

} // namespace

double KilogramsUsed(double pounds) {
    return RoundTo(Kilograms(pounds), 2);
}

double PollutantEmission(double content, double kilograms, double factor) {
    return RoundTo(content / 100 * kilograms * (factor / 100), 0);
}

Result<PollutantTotals> AddUpEmissions(const AdditionalHapData& data) {
    PollutantTotals totals{};
    for (const AdditionalHapMaterial& material : data.Materials) {
        const double kilograms = KilogramsUsed(material.Pounds);
        for (std::size_t slot = 0; slot < PollutantCount; ++slot)
            totals[slot] += PollutantEmission(material.Contents[slot], kilograms, material.Factors[slot]);
        if (!IsEveryFinite(totals))
            return CannotCalculate("add up the additional HAP emissions of the material \"" +
                                   Utf8FromCodePage(material.MaterialId) + '"');
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
    if (!data) return FailReport(app, data.error());
    if (!data->HasRecords && !UserWantsEmptyReport(app)) return ReportDeclined;
    const Result<PollutantTotals> totals = AddUpEmissions(*data);
    if (!totals) return FailReport(app, totals.error());
    return PublishReport(app, AdditionalHapEmissionFile, BuildAdditionalHapEmissionHtml(*data, *totals));
}

} // namespace mact
