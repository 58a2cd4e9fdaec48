#include "reports/additional_hap_usage_report.h"

#include "base/numbers.h"
#include "reports/reports.h"

namespace {

constexpr std::string_view HeaderRowHtml =
    "<tr><td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Material ID</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Quantity (lb)</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Content (w%)</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Emission "
    "Factor</b></font></td></tr>";

// Every cell ends in an opening font tag where a closing one would be: so the page has always been.
std::string CellHtml(std::string_view align, const std::string& content) {
    std::string html = "<td align='";
    html += align;
    html += "' valign='top'><font face='Verdana' size='1'>" + content + "<font></td>";
    return html;
}

std::string MaterialRowsHtml(const PollutantNames& names, const AdditionalHapMaterial& material) {
    std::string html;
    for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
        if (!IsListed(names, slot)) continue;
        html += "<tr>";
        html += slot == 0
                    ? CellHtml("left", material.MaterialId) + CellHtml("center", NumberText(material.Pounds))
                    : "<td>&nbsp;</td><td>&nbsp;</td>";
        html += CellHtml("left", names[slot]) + CellHtml("center", NumberText(material.Contents[slot])) +
                CellHtml("center", NumberText(material.Factors[slot])) + "</tr>";
    }
    return html;
}

} // namespace

bool IsUsed(const AdditionalHapMaterial& material) {
    return material.Pounds > 0;
}

bool IsListed(const PollutantNames& names, std::size_t slot) {
    return slot == 0 || IsUsedName(names[slot]);
}

std::string BuildAdditionalHapUsageHtml(const AdditionalHapData& data) {
    std::string html = "<html><title>Additional HAP Usage Report</title><body>";
    html += CompanyHtml(data.Heading);
    html += TitleHtml("ADDITIONAL HAP(s) USAGE REPORT", MaterialsUsedHtml(data.Heading));
    html += TableStartHtml;
    html += HeaderRowHtml;
    if (!data.HasRecords) html += NoRecordFoundRowHtml;
    for (const AdditionalHapMaterial& material : data.Materials)
        if (IsUsed(material)) html += MaterialRowsHtml(data.Names, material);
    html += PageEndHtml;
    return html;
}

std::int16_t GenerateAdditionalHapUsageReport(AppContext& app, const ReportPeriod& period) {
    const Result<AdditionalHapData> data = FetchAdditionalHap(app, period);
    if (!data) return FailReport(app, data.error());
    if (!data->HasRecords && !UserWantsEmptyReport(app)) return ReportDeclined;
    return PublishReport(app, AdditionalHapUsageFile, BuildAdditionalHapUsageHtml(*data));
}
