#include "store/material_types.h"

#include "base/messages.h"
#include "base/text.h"
#include "store/data_folder.h"
#include "store/record_file.h"

#include <unordered_set>

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

// The tooling resins have no "Closed Molding", their first vacuum bagging row repeats the limit of spray, and
// the method names differ in capitals: so the table has always been.
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
    const auto equals = [](const std::string& filterText, const std::string& field) {
        return EqualsIgnoringCase(Trim(filterText), Trim(field));
    };
    if (filter.MaterialType && !equals(*filter.MaterialType, row.MaterialType)) return false;
    return !filter.ApplicationMethod || equals(*filter.ApplicationMethod, row.ApplicationMethod);
}

/// Takes the names that the distinct listings take.
class DistinctNames {
public:
    void Add(std::string_view name) {
        // A name that was seen before is in the text as well, or was skipped then for the same reason.
        if (!m_seen.emplace(name).second || m_taken.find(name) != std::string::npos) return;
        m_taken += '|';
        m_taken += name;
        Names.emplace_back(name);
    }
    std::vector<std::string> Names;

private:
    std::string m_taken;
    std::unordered_set<std::string> m_seen;
};

std::vector<std::string> ListNames(const std::vector<HapContentRecord>& rows,
                                   std::string HapContentRecord::*field, bool isDistinct) {
    DistinctNames distinct;
    std::vector<std::string> all;
    for (const HapContentRecord& row : rows) {
        const std::string_view name = Trim(row.*field);
        isDistinct ? distinct.Add(name) : void(all.emplace_back(name));
    }
    return isDistinct ? distinct.Names : all;
}

/// No two pairs have the same joined text: it ends with the length of the first.
void JoinPair(std::string_view left, std::string_view right, std::string& joined) {
    joined.assign(left);
    joined += right;
    joined += '|';
    joined += std::to_string(left.size());
}
std::string JoinedKey(std::string_view left, std::string_view right) {
    std::string joined;
    JoinPair(left, right, joined);
    return joined;
}

} // namespace

Done CreateDefaultHapContents(AppContext& app) {
    const std::filesystem::path path = HapContentsFile(app);
    std::string content;
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored)) {
        Result<std::string> present = ReadWholeFile(app.Files, path);
        if (!present) return present.error();
        content = std::move(*present);
    }
    const std::string defaults = DefaultSlots();
    content.replace(0, defaults.size(), defaults);
    // The table appears whole or not at all: an incomplete one would never be completed.
    return ReplaceFile(app.Files, path, content);
}

Result<std::vector<HapContentRecord>> ReadHapContents(AppContext& app, const HapContentFilter& filter) {
    Result<RecordFile> file =
        RecordFile::OpenForReading(app.Files, HapContentsFile(app), HapContentLayout.SlotLength());
    if (!file) return file.error();
    std::vector<HapContentRecord> found;
    const Done read = ForEachRecord<HapContentLayout>(*file, [&](const HapContentRecord& row) {
        if (Passes(filter, row)) found.push_back(row);
    });
    if (!read) return read.error();
    return found;
}

bool FindHapContents(AppContext& app, const HapContentFilter& filter,
                     std::vector<HapContentRecord>& results) {
    results.clear();
    Result<std::vector<HapContentRecord>> found = ReadHapContents(app, filter);
    if (!found) {
        ShowError(app, found.error());
        return false;
    }
    results = std::move(*found);
    return !results.empty();
}

void GetMaterialTypes(AppContext& app, std::vector<std::string>& names, bool isDistinct) {
    std::vector<HapContentRecord> rows;
    FindHapContents(app, {}, rows);
    names = ListNames(rows, &HapContentRecord::MaterialType, isDistinct);
}

void GetApplicationMethods(AppContext& app, std::vector<std::string>& methods, bool isDistinct,
                           const std::optional<std::string>& materialType) {
    std::vector<HapContentRecord> rows;
    FindHapContents(app, {.MaterialType = materialType}, rows);
    methods = ListNames(rows, &HapContentRecord::ApplicationMethod, isDistinct);
}

std::size_t TypeMethodPairs::Add(std::string_view materialType, std::string_view applicationMethod) {
    if (const auto known = Find(materialType, applicationMethod)) return *known;
    m_numbers.emplace(JoinedKey(ComparisonKey(materialType), ComparisonKey(applicationMethod)), m_count);
    return m_count++;
}

std::optional<std::size_t> TypeMethodPairs::Find(std::string_view materialType,
                                                 std::string_view applicationMethod) const {
    JoinPair(materialType, applicationMethod, m_spelling);
    const auto asWritten = m_numbers.find(m_spelling);
    if (asWritten != m_numbers.end()) return asWritten->second;
    const auto asCompared =
        m_numbers.find(JoinedKey(ComparisonKey(materialType), ComparisonKey(applicationMethod)));
    if (asCompared == m_numbers.end()) return std::nullopt;
    return m_numbers.emplace(m_spelling, asCompared->second).first->second;
}

std::vector<std::string> DistinctMaterialTypes(const std::vector<HapContentRecord>& rows) {
    return ListNames(rows, &HapContentRecord::MaterialType, true);
}

} // namespace mact
