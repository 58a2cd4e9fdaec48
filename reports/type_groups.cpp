#include "reports/type_groups.h"

#include "base/text.h"
#include "materials/material_store.h"
#include "store/steady_reading.h"

#include <algorithm>
#include <unordered_map>

namespace mact {

std::vector<TypeGroup> GroupByType(const std::vector<HapContentRecord>& rows) {
    std::unordered_map<std::string, std::vector<HapContentRecord>> openMethods;
    for (const HapContentRecord& row : rows)
        if (!IsClosedMolding(row.ApplicationMethod))
            openMethods[ComparisonKey(row.MaterialType)].push_back(row);

    // The names are trimmed, so their upper case is the key. A type with closed molding alone has no methods.
    std::vector<std::string> names = DistinctMaterialTypes(rows);
    std::ranges::stable_sort(names, {}, UpperCase);
    std::vector<TypeGroup> groups;
    groups.reserve(names.size());
    for (const std::string& name : names)
        groups.push_back({name, openMethods[UpperCase(name)]});
    return groups;
}

bool IsClosedMolding(std::string_view applicationMethod) {
    return Trim(applicationMethod) == "Closed Molding";
}

void MaterialsByMethod::Add(std::string_view materialType, std::string_view applicationMethod,
                            AveragedMaterial material) {
    const std::size_t number = m_pairs.Add(materialType, applicationMethod);
    if (number == m_materials.size()) m_materials.emplace_back(); // a new pair
    m_materials[number].push_back(std::move(material));
}

const std::vector<AveragedMaterial>& MaterialsByMethod::Of(const HapContentRecord& row) const {
    const auto number = m_pairs.Find(row.MaterialType, row.ApplicationMethod);
    return number ? m_materials[*number] : m_none;
}

Result<MaterialsByMethod> ReadMaterialsByMethod(const DataFiles& data) {
    MaterialsByMethod materials;
    const auto add = [&](const MaterialRecord& material) {
        materials.Add(material.MaterialType, material.ApplicationMethod,
                      {.MaterialId = material.MaterialId,
                       .CustomId = material.CustomId,
                       .Density = material.Density,
                       .HapContent = material.HapContent});
    };
    const Done read = VisitLiveMaterials<&MaterialRecord::MaterialId, &MaterialRecord::CustomId,
                                         &MaterialRecord::MaterialType, &MaterialRecord::ApplicationMethod,
                                         &MaterialRecord::Density, &MaterialRecord::HapContent>(data, add);
    if (!read) return read.error();
    return materials;
}

Result<AverageInputs> ReadAverageInputs(const AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    const DataFiles data(app);
    const std::vector<std::filesystem::path> files{HapContentsFile(data), MaterialsFile(data),
                                                   UsageFile(data)};
    return ReadSteadily(app.Files, files, [&]() -> Result<AverageInputs> {
        const Result<std::vector<HapContentRecord>> rows = ReadHapContents(app);
        if (!rows) return rows.error();
        Result<MaterialsByMethod> materials = ReadMaterialsByMethod(app);
        if (!materials) return materials.error();
        Result<PeriodUsage> usage = ReadPeriodUsage(app, months->List);
        if (!usage) return usage.error();
        return AverageInputs{.Heading = HeadingOf(app, *months),
                             .Types = GroupByType(*rows),
                             .Materials = std::move(*materials),
                             .Usage = std::move(*usage)};
    });
}
} // namespace mact
