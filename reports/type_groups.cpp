#include "reports/type_groups.h"

#include "base/text.h"

#include <algorithm>

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

MaterialsByMethod::MaterialsByMethod(std::vector<MaterialRecord> materials) {
    for (MaterialRecord& material : materials) {
        Methods& methods = m_types[ComparisonKey(material.MaterialType)];
        methods[ComparisonKey(material.ApplicationMethod)].push_back(std::move(material));
    }
}

const std::vector<MaterialRecord>& MaterialsByMethod::Of(const HapContentRecord& row) const {
    const auto type = m_types.find(ComparisonKey(row.MaterialType));
    if (type == m_types.end()) return m_none;
    const auto method = type->second.find(ComparisonKey(row.ApplicationMethod));
    return method == type->second.end() ? m_none : method->second;
}
