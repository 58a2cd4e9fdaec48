#include "reports/weighted_average_report.h"

#include "base/numbers.h"
#include "base/text.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"

#include <cmath>
#include <utility>

namespace mact {
namespace {

constexpr std::string_view HeaderRowHtml =
    "<tr><td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>Application "
    "Method</b></font></td>"
    "<td bgcolor='silver'><font face='Verdana' size='1'><b>Amount Used<br>(kg/year)(A)</b></font></td>"
    "<td bgcolor='silver'><font face='Verdana' size='1'><b>HAP Limit</b></font></td>"
    "<td bgcolor='silver'><font face='Verdana' size='1'><b>HAP Content<br>[(B/A)*100]</b></font></td>"
    "<td bgcolor='silver'><font face='Verdana' size='1'><b>Compliant</b></font></td></tr>";

// Spans six columns in a table of five, on purpose: the page has always been like this.
std::string GroupRowHtml(const std::string& materialType) {
    return "<tr><td colspan='6' bgcolor='#DDDDDD'><font face='Verdana' size='1'>Material : " + materialType +
           "</font></td></tr>";
}

std::string CompliantHtml(const WeightedAverageRow& row) {
    return IsCompliant(row) ? "<font face='Verdana' size='1' color='green'>Yes</font>"
                            : "<font face='Verdana' size='1' color='red'>No</font>";
}

// The amount is in Mg on purpose, although the column heading says kg.
std::string RowHtml(const WeightedAverageRow& row) {
    const std::string nextCell = "</font></td><td align='center'><font face='Verdana' size='1'>";
    const std::string limit =
        row.HapLimit ? NumberText(*row.HapLimit) : "<font face='Verdana' size='1'>No Limit</font>";
    return "<tr><td><font face='Verdana' size='1'>" + row.Method + nextCell +
           NumberText(RoundTo(row.Amount / KgPerMg, 3)) + nextCell + limit + nextCell +
           NumberText(WeightedContent(row)) + "</font></td><td align='center'>" + CompliantHtml(row) +
           "</td></tr>";
}

Failure CannotAverage(const HapContentRecord& method) {
    return CannotCalculate("average the HAP content of the material type \"" +
                           Utf8FromCodePage(Trim(method.MaterialType)) + "\" with the application method \"" +
                           Utf8FromCodePage(Trim(method.ApplicationMethod)) + '"');
}

Result<WeightedAverageGroup> AverageType(const TypeGroup& type, const MaterialsByMethod& materials,
                                         const PeriodUsage& usage) {
    WeightedAverageGroup group{.MaterialType = type.Name};
    for (const HapContentRecord& method : type.Methods) {
        Result<WeightedAverageRow> row = AverageMethod(method, materials.Of(method), usage);
        if (!row) return row.error();
        group.Rows.push_back(std::move(*row));
    }
    return group;
}

} // namespace

double AmountInKg(double pounds) {
    return pounds > 0 ? RoundTo(Kilograms(pounds), 2) : 0;
}

double WeightedContent(const WeightedAverageRow& row) {
    if (row.Amount == 0 || row.Hap == 0) return 0; // 0 / 0 is not a number
    return RoundTo(row.Hap / row.Amount * 100, 2);
}

bool IsCompliant(const WeightedAverageRow& row) {
    // The rounded content is compared, since that is what the page shows.
    return !row.HapLimit || WeightedContent(row) <= *row.HapLimit;
}

bool IsFilledResin(std::string_view materialType) {
    const std::string key = ComparisonKey(materialType);
    return key == "TOOLING RESIN (FILLED)" || key == "PRODUCTION RESIN (FILLED)";
}

Result<WeightedAverageRow> AverageMethod(const HapContentRecord& method,
                                         const std::vector<AveragedMaterial>& materials,
                                         const PeriodUsage& usage) {
    WeightedAverageRow row{.Method = std::string(Trim(method.ApplicationMethod)),
                           .HapLimit = LimitOf(method)};
    for (const AveragedMaterial& material : materials) {
        const Result<double> pounds =
            usage.PoundsUsed(material.MaterialId, material.Density, material.CustomId);
        if (!pounds) return pounds.error();
        const double amount = AmountInKg(*pounds);
        // Each material's amount is rounded before it is added, on purpose.
        row.Amount += amount;
        row.Hap += amount * material.HapContent / 100; // not rounded; WeightedContent rounds
    }
    if (!std::isfinite(row.Amount) || !std::isfinite(row.Hap) || !std::isfinite(WeightedContent(row)))
        return CannotAverage(method);
    return row;
}

Result<WeightedAverageData> FetchWeightedAverage(const AppContext& app, const ReportPeriod& period) {
    Result<AverageInputs> inputs = ReadAverageInputs(app, period);
    if (!inputs) return inputs.error();
    WeightedAverageData data{.Heading = std::move(inputs->Heading)};
    for (const TypeGroup& type : inputs->Types) {
        if (IsFilledResin(type.Name)) continue;
        Result<WeightedAverageGroup> group = AverageType(type, inputs->Materials, inputs->Usage);
        if (!group) return group.error();
        data.Groups.push_back(std::move(*group));
    }
    return data;
}

std::string BuildWeightedAverageHtml(const WeightedAverageData& data) {
    std::string html = "<html><head><title>Weighted-Average HAP Content Report</title></head><body>";
    html += CompanyHtml(data.Heading);
    html += TitleHtml("WEIGHTED-AVERAGE HAP CONTENT REPORT", FromToHtml(data.Heading));
    html += TableStartHtml;
    html += HeaderRowHtml;
    for (const WeightedAverageGroup& group : data.Groups) {
        html += GroupRowHtml(group.MaterialType);
        for (const WeightedAverageRow& row : group.Rows)
            html += RowHtml(row);
    }
    html += PageEndHtml;
    return html;
}

// Never asks: without usage every method complies.
std::int16_t GenerateWeightedAverageReport(AppContext& app, const ReportPeriod& period) {
    return PublishReport(app, WeightedAverageFile,
                         FetchWeightedAverage(app, period).transform(BuildWeightedAverageHtml));
}
} // namespace mact
