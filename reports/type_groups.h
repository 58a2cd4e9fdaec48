#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "materials/material_record.h"
#include "store/material_types.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The material-type table as the two averaging reports walk it.

/// A type name with its application methods in file order; methods of closed molding are left out.
struct TypeGroup {
    std::string Name{}; ///< trimmed
    std::vector<HapContentRecord> Methods{};
};
/// The distinct type names sorted ascending, letter case ignored; equal ones keep their order. Names that
/// differ in case alone are two groups, each with the methods of both.
std::vector<TypeGroup> GroupByType(const std::vector<HapContentRecord>& rows);

/// The letter case counts.
bool IsClosedMolding(std::string_view applicationMethod);

/// Materials by type and method, looked up trimmed and without regard to case.
class MaterialsByMethod {
public:
    explicit MaterialsByMethod(std::vector<MaterialRecord> materials);
    /// In file order.
    const std::vector<MaterialRecord>& Of(const HapContentRecord& row) const;

private:
    using Methods = std::unordered_map<std::string, std::vector<MaterialRecord>>;
    std::unordered_map<std::string, Methods> m_types;
    std::vector<MaterialRecord> m_none;
};
