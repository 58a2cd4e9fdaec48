#include "reports/emission_average_report.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/point_value.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace mact {
namespace {

constexpr std::size_t MaterialIdLength = 100; // shown with the blanks of its field, on purpose

constexpr std::string_view PageStartHtml =
    "<html><head><style type='text/css'>td{font-family: Verdana;font-size: 10px;} td.hl{font-weight: bold;}"
    "</style><title>Emission-Average HAP Content Report</title></head><body>";

constexpr std::string_view HeaderRowHtml =
    "<tr><td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>Application "
    "Method</b></font></td>"
    "<td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>HAP Content<br>(%)</b></font></td>"
    "<td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>(A)<br>Point Values<br>(Kg/Mg)</b>"
    "</font></td>"
    "<td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>(B)<br>Amount Used<br>(kg/yr)</b>"
    "</font></td>"
    "<td bgcolor='silver' align='center'><font face='Verdana' size='1'><b>(A x B)<br>PV HAP Emissions<br>"
    "(kg/yr)</b></font></td></tr>";

std::string GroupRowHtml(const std::string& materialType) {
    return "<tr><td colspan='5' bgcolor='#DDDDDD'><font face='Verdana' size='1'>Material : " + materialType +
           "</font></td></tr>";
}

void AddMaterialRow(std::string& html, const std::string& method, const EmissionRow& row) {
    AppendAll(html, "<tr><td>", method, " (Material ID:", row.Material);
    // Trailing blanks are lost when a record is read; here they are put back.
    html.append(MaterialIdLength - std::min(row.Material.size(), MaterialIdLength), ' ');
    AppendAll(html, ")</td><td>", NumberText(row.HapContent), "</td><td>", NumberText(row.PointValue),
              "</td><td>", NumberText(row.Amount), "</td><td>", NumberText(RoundTo(Emission(row), 2)),
              "</td></tr>");
}

// Not rounded again, unlike its rows: a total of 555.3135 stands below 555.31.
std::string MethodTotalHtml(const EmissionMethod& method) {
    const std::string label = "<tr><td class='hl' colspan=3>" + method.Method + " (TOTAL)</td>";
    if (method.Amount == 0) return label + "<td colspan=2> Not Used</td></tr>"; // or under 5 kg of each
    return label + "<td class='hl'>" + NumberText(method.Amount) + "</td><td class='hl'>" +
           NumberText(method.Emission) + "</td></tr>";
}

// The bold element is never closed, on purpose: the page has always been like this.
std::string LabelCellHtml(std::string_view label) {
    std::string html = "<tr><td colspan='4' align='right'><font face='Verdana' size='1'><b>";
    html += label;
    html += "  </font></td><td align='center'>";
    return html;
}

std::string TotalRowHtml(std::string_view label, double kilograms) {
    return LabelCellHtml(label) + "<font face='Verdana' size='1'>" + NumberText(RoundTo(kilograms, 2)) +
           "</font></td></tr>";
}

std::string CompliantRowHtml(const EmissionAverageData& data) {
    return LabelCellHtml("Compliant ?") +
           (IsCompliant(data) ? "<font color='green'>Yes</font>" : "<font color='red'>No</font>") +
           "</td></tr>";
}

std::size_t CountRows(const EmissionAverageData& data) {
    std::size_t count = 0;
    for (const EmissionGroup& group : data.Groups)
        for (const EmissionMethod& method : group.Methods)
            count += method.Rows.size();
    return count;
}

/// Whether the number is finite once it is rounded: RoundTo multiplies first, which may overflow.
bool IsShowable(double number) {
    return std::isfinite(RoundTo(number, 2));
}

Result<EmissionRow> EmitMaterial(const HapContentRecord& method, const AveragedMaterial& material,
                                 const PeriodUsage& usage) {
    const Result<double> pounds = usage.PoundsUsed(material.MaterialId, material.Density, material.CustomId);
    if (!pounds) return pounds.error();
    EmissionRow row{.Material = material.CustomId,
                    .HapContent = material.HapContent,
                    .PointValue = PointValue(method, material.HapContent),
                    .Amount = AmountInMg(*pounds)};
    if (!std::isfinite(row.PointValue))
        return CannotCalculate("calculate the point value of " + MaterialNamed(material.CustomId));
    if (!IsShowable(Emission(row)))
        return CannotCalculate("calculate the HAP emissions of " + MaterialNamed(material.CustomId));
    return row;
}

/// Adds the type's group to `data`, and its sums to the report's.
Done AddGroup(const TypeGroup& type, const MaterialsByMethod& materials, const PeriodUsage& usage,
              EmissionAverageData& data) {
    EmissionGroup group{.MaterialType = type.Name};
    for (const HapContentRecord& method : type.Methods) {
        Result<EmissionMethod> emitted = EmitMethod(method, materials.Of(method), usage);
        if (!emitted) return emitted.error();
        data.Emission += emitted->Emission;
        data.Allowance += emitted->Amount * emitted->EmissionLimit; // of rounded amounts
        group.Methods.push_back(std::move(*emitted));
    }
    data.Groups.push_back(std::move(group));
    return Success();
}

} // namespace

double AmountInMg(double pounds) {
    // In Mg on purpose, although the column that shows it says kg.
    return pounds > 0 ? RoundTo(Kilograms(pounds) / KgPerMg, 2) : 0;
}

double Emission(const EmissionRow& row) {
    // The product of two numbers that are already rounded, on purpose: the ones that the page shows.
    return row.PointValue * row.Amount;
}

bool IsCompliant(const EmissionAverageData& data) {
    return data.Emission <= data.Allowance; // not rounded, unlike the totals on the page
}

Result<EmissionMethod> EmitMethod(const HapContentRecord& method,
                                  const std::vector<AveragedMaterial>& materials, const PeriodUsage& usage) {
    EmissionMethod emitted{.Method = std::string(Trim(method.ApplicationMethod)),
                           .EmissionLimit = method.EmissionLimit};
    emitted.Rows.reserve(materials.size());
    for (const AveragedMaterial& material : materials) {
        Result<EmissionRow> row = EmitMaterial(method, material, usage);
        if (!row) return row.error();
        emitted.Amount += row->Amount;
        emitted.Emission += Emission(*row);
        emitted.Rows.push_back(std::move(*row));
    }
    return emitted;
}

Result<EmissionAverageData> FetchEmissionAverage(const AppContext& app, const ReportPeriod& period) {
    Result<AverageInputs> inputs = ReadAverageInputs(app, period);
    if (!inputs) return inputs.error();
    EmissionAverageData data{.Heading = std::move(inputs->Heading)};
    for (const TypeGroup& type : inputs->Types) {
        const Done added = AddGroup(type, inputs->Materials, inputs->Usage, data);
        if (!added) return added.error();
    }
    if (!IsShowable(data.Emission) || !IsShowable(data.Allowance))
        return CannotCalculate("add up the HAP emissions of the report");
    return data;
}

std::string BuildEmissionAverageHtml(const EmissionAverageData& data) {
    std::string html(PageStartHtml);
    constexpr std::size_t roomForRow = 250; // bytes; most take less; 40 more for headings and totals
    html.reserve((CountRows(data) + 40) * roomForRow); // or a growing page is copied repeatedly
    html += CompanyHtml(data.Heading);
    html += TitleHtml("EMISSION-AVERAGE HAP CONTENT REPORT", FromToHtml(data.Heading));
    html += TableStartHtml;
    html += HeaderRowHtml;
    for (const EmissionGroup& group : data.Groups) {
        html += GroupRowHtml(group.MaterialType);
        for (const EmissionMethod& method : group.Methods) {
            for (const EmissionRow& row : method.Rows)
                AddMaterialRow(html, method.Method, row);
            html += MethodTotalHtml(method);
        }
    }
    html += TotalRowHtml("Total PV HAP Emissions (kg/yr)", data.Emission);
    html += TotalRowHtml("HAP Limit (kg/yr)", data.Allowance);
    html += CompliantRowHtml(data);
    html += PageEndHtml;
    return html;
}

// Never asks: without usage both totals are 0, which complies.
std::int16_t GenerateEmissionAverageReport(AppContext& app, const ReportPeriod& period) {
    return PublishReport(app, EmissionAverageFile,
                         FetchEmissionAverage(app, period).transform(BuildEmissionAverageHtml));
}
} // namespace mact
