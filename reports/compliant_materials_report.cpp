#include "reports/compliant_materials_report.h"

#include "base/by_number.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"
#include "store/steady_reading.h"
#include "usage/usage_store.h"

#include <cmath>

namespace mact {
namespace {

constexpr std::string_view HeaderRowHtml =
    "<tr><td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Material ID</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Material Type/Application "
    "Method</b>"
    "</font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Content</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>HAP Limit</b></font></td>"
    "<td align='center' bgcolor='#DDDDDD'><font face='Verdana' size='1'><b>Compliant</b></font></td></tr>";

void AddRow(std::string& html, const CompliantRow& row) {
    constexpr std::string_view nextCell =
        "</font></td><td align='center' valign='top'><font face='Verdana' size='1'>";
    AppendAll(html, "<tr><td align='left' valign='top'><font face='Verdana' size='1'>", row.Material,
              "</font></td><td align='left' valign='top'><font face='Verdana' size='1'>", row.Method,
              nextCell, NumberText(row.HapContent), nextCell,
              row.HapLimit ? NumberText(*row.HapLimit) : "No Limit", nextCell,
              IsCompliant(row) ? "<font color='green'>Yes</font>" : "<font color='red'>No</font>",
              "</font></td></tr>");
}

std::string Joined(std::string_view left, std::string_view separator, std::string_view right) {
    std::string text;
    text.reserve(left.size() + separator.size() + right.size());
    AppendAll(text, Trim(left), separator, Trim(right));
    return text;
}

/// The materials in the order of the usage, one per usage record; usage without a live material adds none.
std::vector<const MaterialRecord*> ListUsed(const std::vector<MaterialRecord>& materials,
                                            const std::vector<UsageRecord>& usage) {
    ByNumber<const MaterialRecord*> firstOf;
    for (const MaterialRecord& material : materials)
        if (!firstOf[material.MaterialId]) firstOf[material.MaterialId] = &material; // the first counts
    std::vector<const MaterialRecord*> listed;
    listed.reserve(usage.size());
    for (const UsageRecord& use : usage)
        if (firstOf[use.MaterialId]) listed.push_back(firstOf[use.MaterialId]);
    return listed;
}

/// Adds a row for each material whose type and method are in the table.
Done AddRows(const DataFiles& data, const std::vector<const MaterialRecord*>& materials,
             CompliantMaterialsData& report) {
    const Result<std::vector<HapContentRecord>> types = ReadHapContents(data);
    if (!types) return types.error();
    const LimitTable limits(*types);
    report.HasRecords = true; // even if no row follows: the question is for missing materials or usage
    for (const MaterialRecord* material : materials)
        if (std::optional<CompliantRow> row = limits.RowOf(*material)) report.Rows.push_back(std::move(*row));
    return Success();
}

Result<CompliantMaterialsData> FetchAll(const AppContext& app) {
    CompliantMaterialsData report{.Heading = HeadingOf(app, {}), .IsAllMaterials = true}; // no months
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(app);
    if (!materials) return materials.error();
    if (materials->empty()) return report; // without records, so the user will be asked
    std::vector<const MaterialRecord*> all;
    all.reserve(materials->size());
    for (const MaterialRecord& material : *materials)
        all.push_back(&material);
    const Done added = AddRows(app, all, report);
    if (!added) return added.error();
    return report;
}

Result<CompliantMaterialsData> FetchUsed(const AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    CompliantMaterialsData report{.Heading = HeadingOf(app, *months)};
    const Result<std::vector<UsageRecord>> usage = ReadUsage(app, {.Periods = months->List});
    if (!usage) return usage.error();
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(app);
    if (!materials) return materials.error();
    if (usage->empty() || materials->empty()) return report;
    const Done added = AddRows(app, ListUsed(*materials, *usage), report);
    if (!added) return added.error();
    return report;
}

/// Only what the page shows: a damaged material that has no row does no harm.
Done CheckNumbers(const std::vector<CompliantRow>& rows) {
    for (const CompliantRow& row : rows) {
        if (!std::isfinite(row.HapContent))
            return CannotShow("the HAP content of the material", row.Material);
        if (row.HapLimit && !std::isfinite(*row.HapLimit)) return CannotShow("the HAP limit of", row.Method);
    }
    return Success();
}

} // namespace

bool IsCompliant(const CompliantRow& row) {
    return !row.HapLimit || !(row.HapContent > *row.HapLimit);
}

LimitTable::LimitTable(const std::vector<HapContentRecord>& rows) {
    // Add returns the number of limits so far only for a new pair: the first row of each pair counts.
    for (const HapContentRecord& row : rows)
        if (m_pairs.Add(row.MaterialType, row.ApplicationMethod) == m_limits.size())
            m_limits.push_back({Joined(row.MaterialType, "/", row.ApplicationMethod), LimitOf(row)});
}

std::optional<CompliantRow> LimitTable::RowOf(const MaterialRecord& material) const {
    const auto number = m_pairs.Find(material.MaterialType, material.ApplicationMethod);
    if (!number) return std::nullopt;
    return CompliantRow{.Material = Joined(material.CustomId, " - ", material.Description),
                        .Method = m_limits[*number].Method,
                        .HapContent = material.HapContent,
                        .HapLimit = m_limits[*number].HapLimit};
}

Result<CompliantMaterialsData> FetchCompliantMaterials(const AppContext& app, const ReportPeriod& period) {
    const DataFiles files(app);
    std::vector<std::filesystem::path> read{HapContentsFile(files), MaterialsFile(files)};
    if (!period.EndText.empty()) read.push_back(UsageFile(files));
    Result<CompliantMaterialsData> data = ReadSteadily(
        app.Files, read, [&] { return period.EndText.empty() ? FetchAll(app) : FetchUsed(app, period); });
    if (!data) return data;
    const Done checked = CheckNumbers(data->Rows);
    if (!checked) return checked.error();
    return data;
}

std::string BuildCompliantMaterialsHtml(const CompliantMaterialsData& data) {
    std::string html = "<html><title>Compliant Materials Report</title><body>";
    constexpr std::size_t roomForRow = 600;            // bytes; most take less
    html.reserve((data.Rows.size() + 4) * roomForRow); // or a growing page is copied repeatedly
    html += CompanyHtml(data.Heading);
    html += TitleHtml("COMPLIANT MATERIALS REPORT",
                      data.IsAllMaterials ? "<u>All Materials</u>" : MaterialsUsedHtml(data.Heading));
    html += TableStartHtml;
    html += HeaderRowHtml;
    if (!data.HasRecords) html += NoRecordFoundRowHtml; // not if Rows is empty: see AddRows
    for (const CompliantRow& row : data.Rows)
        AddRow(html, row);
    html += PageEndHtml;
    return html;
}

std::int16_t GenerateCompliantMaterialsReport(AppContext& app, const ReportPeriod& period) {
    const Result<CompliantMaterialsData> data = FetchCompliantMaterials(app, period);
    if (data && !data->HasRecords && !UserWantsEmptyReport(app)) return ReportDeclined;
    return PublishReport(app, CompliantMaterialsFile, data.transform(BuildCompliantMaterialsHtml));
}
} // namespace mact
