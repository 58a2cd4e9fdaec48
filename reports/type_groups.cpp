#include "reports/type_groups.h"

#include "base/text.h"
#include "materials/material_store.h"

#include <algorithm>

namespace mact {

std::vector<TypeGroup> GroupByType(const std::vector<HapContentRecord>& rows) {
    std::unordered_map<std::string, std::vector<HapContentRecord>> openMethods;
    for (const HapContentRecord& row : rows)
        if (!IsClosedMolding(row.ApplicationMethod))
            openMethods[ComparisonKey(row.MaterialType)].push_back(row);

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
    if (number == m_materials.size()) m_materials.emplace_back();
    m_materials[number].push_back(std::move(material));
}

const std::vector<AveragedMaterial>& MaterialsByMethod::Of(const HapContentRecord& row) const {
    const auto number = m_pairs.Find(row.MaterialType, row.ApplicationMethod);
    return number ? m_materials[*number] : m_none;
}

Result<MaterialsByMethod> ReadMaterialsByMethod(AppContext& app) {
    MaterialsByMethod materials;
    const Done read = VisitLiveMaterialSlots(app, [&](std::string_view slot) {
        materials.Add(
            TrimEnd(Peek<MaterialLayout, &MaterialRecord::MaterialType>(slot)),
            TrimEnd(Peek<MaterialLayout, &MaterialRecord::ApplicationMethod>(slot)),
            {.MaterialId = Peek<MaterialLayout, &MaterialRecord::MaterialId>(slot),
             .CustomId = std::string(TrimEnd(Peek<MaterialLayout, &MaterialRecord::CustomId>(slot))),
             .Density = Peek<MaterialLayout, &MaterialRecord::Density>(slot),
             .HapContent = Peek<MaterialLayout, &MaterialRecord::HapContent>(slot)});
    });
    if (!read) return read.error();
    return materials;
}

} // namespace mact
