#include "store/material_types.h"

#include "base/messages.h"
#include "base/text.h"
#include "store/data_folder.h"
#include "store/steady_reading.h"

namespace mact {
namespace {

struct DefaultRow {
    std::string_view MaterialType;
    std::string_view ApplicationMethod;
    double HapLimit;
    double EfCoefficient;
    double EfExponent;
    double EmissionLimit;
};

// Uneven on purpose: tooling resins lack "Closed Molding" and repeat limits, and capitals differ.
constexpr DefaultRow DefaultRows[] = {
    {"Production resin",          "Spray",                                       28, 0.014,   2.425, 46 },
    {"Production resin",          "Spray (Vacuum bagging after roll-out)",       30, 0.01185, 2.425, 46 },
    {"Production resin",          "Spray (Vacuum bagging without roll-out)",     33, 0.00945, 2.425, 46 },
    {"Production resin",          "Non-Spray",                                   35, 0.014,   2.275, 46 },
    {"Production resin",          "Non-spray (Vacuum bagging after roll-out)",   39, 0.011,   2.275, 46 },
    {"Production resin",          "Non-spray (Vacuum bagging without roll-out)", 46, 0.0076,  2.275, 46 },
    {"Production resin",          "Closed Molding",                              -1, 0,       0,     46 },
    {"Pigmented production gel",  "All",                                         33, 0.445,   1.675, 159},
    {"Clear production gel coat", "All",                                         48, 0.445,   1.675, 291},
    {"Tooling resin",             "Spray",                                       30, 0.014,   2.425, 54 },
    {"Tooling resin",             "Spray (Vacuum bagging after roll-out)",       30, 0.01185, 2.425, 54 },
    {"Tooling resin",             "Spray (Vacuum bagging without roll-out)",     33, 0.00945, 2.425, 54 },
    {"Tooling resin",             "Non-Spray",                                   39, 0.014,   2.275, 54 },
    {"Tooling resin",             "Non-spray (Vacuum bagging after roll-out)",   39, 0.011,   2.275, 54 },
    {"Tooling resin",             "Non-spray (Vacuum bagging without roll-out)", 46, 0.0076,  2.275, 54 },
    {"Tooling gel coat",          "All",                                         40, 0.445,   1.675, 214},
    {"Production resin (Filled)", "Spray",                                       28, 0.014,   2.425, 46 },
    {"Production resin (Filled)", "Spray (Vacuum bagging after roll-out)",       30, 0.01185, 2.425, 46 },
    {"Production resin (Filled)", "Spray (Vacuum bagging without roll-out)",     33, 0.00945, 2.425, 46 },
    {"Production resin (Filled)", "Non-Spray",                                   35, 0.014,   2.275, 46 },
    {"Production resin (Filled)", "Non-spray (Vacuum bagging after roll-out)",   39, 0.011,   2.275, 46 },
    {"Production resin (Filled)", "Non-spray (Vacuum bagging without roll-out)", 46, 0.0076,  2.275, 46 },
    {"Production resin (Filled)", "Closed Molding",                              -1, 0,       0,     46 },
    {"Tooling resin (Filled)",    "Spray",                                       30, 0.014,   2.425, 54 },
    {"Tooling resin (Filled)",    "Spray (Vacuum bagging after roll-out)",       30, 0.01185, 2.425, 54 },
    {"Tooling resin (Filled)",    "Spray (Vacuum bagging without roll-out)",     33, 0.00945, 2.425, 54 },
    {"Tooling resin (Filled)",    "Non-Spray",                                   39, 0.014,   2.275, 54 },
    {"Tooling resin (Filled)",    "Non-spray (Vacuum bagging after roll-out)",   39, 0.011,   2.275, 54 },
    {"Tooling resin (Filled)",    "Non-spray (Vacuum bagging without roll-out)", 46, 0.0076,  2.275, 54 },
};

std::string DefaultSlots() {
    std::string slots;
    for (const DefaultRow& row : DefaultRows)
        slots += Pack(HapContentLayout, {.MaterialType = std::string(row.MaterialType),
                                         .HapLimit = row.HapLimit,
                                         .ApplicationMethod = std::string(row.ApplicationMethod),
                                         .EfCoefficient = row.EfCoefficient,
                                         .EfExponent = row.EfExponent,
                                         .EmissionLimit = row.EmissionLimit});
    return slots;
}

bool Passes(const HapContentFilter& filter, const HapContentRecord& row) {
    if (filter.MaterialType && !IsSameName(*filter.MaterialType, row.MaterialType)) return false;
    return !filter.ApplicationMethod || IsSameName(*filter.ApplicationMethod, row.ApplicationMethod);
}

/// The names of a distinct listing, on purpose without those that occur in an earlier one.
class DistinctNames {
public:
    void Add(std::string_view name) {
        if (m_taken.find(name) != std::string::npos) return;
        m_taken += '|';
        m_taken += name;
        Names.emplace_back(name);
    }
    std::vector<std::string> Names;

private:
    std::string m_taken; ///< each with "|" in front
};

std::vector<std::string> ListNames(const std::vector<HapContentRecord>& rows,
                                   std::string HapContentRecord::*field, bool isDistinct) {
    DistinctNames distinct;
    std::vector<std::string> all;
    for (const HapContentRecord& row : rows) {
        const std::string_view name = Trim(row.*field);
        if (isDistinct)
            distinct.Add(name);
        else
            all.emplace_back(name);
    }
    return isDistinct ? distinct.Names : all;
}

} // namespace

Done CreateDefaultHapContents(const DataFiles& data) {
    const std::filesystem::path path = HapContentsFile(data);
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    std::string content;
    if (*isThere) {
        Result<std::string> present = ReadWholeFile(data.Files, path);
        if (!present) return present.error();
        content = std::move(*present);
    }
    const std::string defaults = DefaultSlots();
    content.replace(0, defaults.size(), defaults); // rows beyond the defaults stay
    // Whole or not at all: an incomplete table would never be completed.
    return ReplaceFile(data.Files, path, content);
}

std::optional<double> LimitOf(const HapContentRecord& row) {
    constexpr double noLimit = -1;
    return row.HapLimit == noLimit ? std::nullopt : std::optional(row.HapLimit);
}

Result<std::vector<HapContentRecord>> ReadHapContents(const DataFiles& data, const HapContentFilter& filter) {
    return ReadRecordsSteadily(data.Files, HapContentsFile(data), HapContentLayout,
                               [&](const HapContentRecord& row) { return Passes(filter, row); });
}

bool FindHapContents(AppContext& app, const HapContentFilter& filter,
                     std::vector<HapContentRecord>& results) {
    results.clear();
    Result<std::vector<HapContentRecord>> found = ReadHapContents(app, filter);
    if (ShowFailure(app, found)) return false;
    results = std::move(*found);
    return !results.empty();
}

void GetMaterialTypes(AppContext& app, std::vector<std::string>& names, bool isDistinct) {
    std::vector<HapContentRecord> rows;
    FindHapContents(app, {}, rows); // leaves none after a failure
    names = ListNames(rows, &HapContentRecord::MaterialType, isDistinct);
}

void GetApplicationMethods(AppContext& app, std::vector<std::string>& methods, bool isDistinct,
                           const std::optional<std::string>& materialType) {
    std::vector<HapContentRecord> rows;
    FindHapContents(app, {.MaterialType = materialType}, rows);
    methods = ListNames(rows, &HapContentRecord::ApplicationMethod, isDistinct);
}

// Trims in passing, so that a lookup needs no trimmed copies.
bool TypeMethodPairs::Less::operator()(const Views& left, const Views& right) const {
    const int types = CompareIgnoringCase(left.first, right.first);
    return types < 0 || (types == 0 && CompareIgnoringCase(left.second, right.second) < 0);
}

std::size_t TypeMethodPairs::Add(std::string_view materialType, std::string_view applicationMethod) {
    if (const auto known = Find(materialType, applicationMethod)) return *known;
    const std::size_t number = m_numbers.size();
    m_numbers.emplace(std::pair(Trim(materialType), Trim(applicationMethod)), number);
    return number;
}

std::optional<std::size_t> TypeMethodPairs::Find(std::string_view materialType,
                                                 std::string_view applicationMethod) const {
    const auto found = m_numbers.find(Less::Views(Trim(materialType), Trim(applicationMethod)));
    return found == m_numbers.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> DistinctMaterialTypes(const std::vector<HapContentRecord>& rows) {
    return ListNames(rows, &HapContentRecord::MaterialType, true);
}
} // namespace mact
