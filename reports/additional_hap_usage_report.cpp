#include "reports/additional_hap_usage_report.h"

#include "base/numbers.h"
#include "base/text.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"

#include <cmath>

namespace mact {
namespace {

constexpr std::string_view HeaderRowHtml =
    "<tr><td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Material ID</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Quantity (lb)</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Content (w%)</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Emission "
    "Factor</b></font></td></tr>";

// Every cell ends in an opening font tag instead of a closing one, on purpose.
void AddCell(std::string& html, std::string_view align, std::string_view content) {
    AppendAll(html, "<td align='", align, "' valign='top'><font face='Verdana' size='1'>", content,
              "<font></td>");
}

void AddMaterialRows(std::string& html, const PollutantNames& names, const AdditionalHapMaterial& material) {
    for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
        if (!IsListed(names, slot)) continue;
        html += "<tr>";
        if (slot == 0) {
            AddCell(html, "left", material.MaterialId);
            AddCell(html, "center", NumberText(material.Pounds));
        } else {
            html += "<td>&nbsp;</td><td>&nbsp;</td>";
        }
        AddCell(html, "left", names[slot]);
        AddCell(html, "center", NumberText(material.Contents[slot]));
        AddCell(html, "center", NumberText(material.Factors[slot]));
        html += "</tr>";
    }
}

Result<std::string> BuildPage(const AdditionalHapData& data) {
    const Done checked = CheckShownNumbers(data);
    if (!checked) return checked.error();
    return BuildAdditionalHapUsageHtml(data);
}

} // namespace

bool IsUsed(const AdditionalHapMaterial& material) {
    return material.Pounds > 0;
}

bool IsListed(const PollutantNames& names, std::size_t slot) {
    return slot == 0 || IsUsedName(names[slot]);
}

// The pounds need no check: a sum that is not finite has already been a failure of PoundsUsed.
Done CheckShownNumbers(const AdditionalHapData& data) {
    for (const AdditionalHapMaterial& material : data.Materials)
        for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
            if (!IsUsed(material) || !IsListed(data.Names, slot)) continue;
            if (!std::isfinite(material.Contents[slot]) || !std::isfinite(material.Factors[slot]))
                return CannotShow("the additional HAP values of the material", material.MaterialId);
        }
    return Success();
}

std::string BuildAdditionalHapUsageHtml(const AdditionalHapData& data) {
    std::string html = "<html><title>Additional HAP Usage Report</title><body>";
    constexpr std::size_t roomForMaterial = 600; // bytes; most take less: half of them are not used
    html.reserve((data.Materials.size() + 4) * roomForMaterial); // or a growing page is copied repeatedly
    html += CompanyHtml(data.Heading);
    html += TitleHtml("ADDITIONAL HAP(s) USAGE REPORT", MaterialsUsedHtml(data.Heading));
    html += TableStartHtml;
    html += HeaderRowHtml;
    if (!data.HasRecords) html += NoRecordFoundRowHtml;
    for (const AdditionalHapMaterial& material : data.Materials)
        if (IsUsed(material)) AddMaterialRows(html, data.Names, material);
    html += PageEndHtml;
    return html;
}

std::int16_t GenerateAdditionalHapUsageReport(AppContext& app, const ReportPeriod& period) {
    const Result<AdditionalHapData> data = FetchAdditionalHap(app, period);
    if (data && !data->HasRecords && !UserWantsEmptyReport(app)) return ReportDeclined;
    return PublishReport(app, AdditionalHapUsageFile, data.and_then(BuildPage));
}
} // namespace mact
