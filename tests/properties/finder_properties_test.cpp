#include "materials/material_store.h"
#include "tests/support/memory_program.h"
#include "tests/support/random_data.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {

// The finders compared with a plain scan of all records, for random records and filters.

namespace {

constexpr unsigned Cases = 300;

std::string Trimmed(std::string text) {
    while (!text.empty() && text.front() == ' ')
        text.erase(0, 1);
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

/// Enough for the letters that these tests use.
std::string Upper(std::string text) {
    for (char& character : text)
        if ((character >= 'a' && character <= 'z') || character == '\xE9')
            character = static_cast<char>(character - 32);
    return text;
}

bool IsSameText(const std::string& left, const std::string& right) {
    return Upper(Trimmed(left)) == Upper(Trimmed(right));
}

const std::vector<std::string> Ids = {"R-1", "r-1 ", " R-1", "\xC9", "\xE9", "", "GC 2"};
const std::vector<std::string> Types = {"Resin", "RESIN", " resin", "Gel"};
const std::vector<std::string> Methods = {"Spray", "spray", "All"};
const std::vector<std::string> Periods = {"3/2005", "13/2005", " 3/2005", "03/2005", "3/2006", "12/2005", "",
                                          "3",      "/2005",   "3 / 20",  "a/B",     "A/b",    "1/2005/"};

std::vector<MaterialRecord> Materials(RandomData& data) {
    std::vector<MaterialRecord> materials(static_cast<std::size_t>(data.Int(0, 15)));
    for (std::size_t index = 0; index < materials.size(); ++index)
        // Sometimes a number other than the slot's, as in a damaged file.
        materials[index] = {.MaterialId =
                                data.OneIn(6) ? data.Int16(-3, 20) : static_cast<std::int16_t>(index + 1),
                            .CustomId = data.Pick(Ids),
                            .MaterialType = data.Pick(Types),
                            .ApplicationMethod = data.Pick(Methods),
                            .Active = !data.OneIn(4)};
    return materials;
}

std::vector<UsageRecord> Usage(RandomData& data) {
    std::vector<UsageRecord> usage(static_cast<std::size_t>(data.Int(0, 40)));
    for (std::size_t index = 0; index < usage.size(); ++index)
        usage[index] = {.UsageId = data.OneIn(6) ? data.Int16(-3, 50) : static_cast<std::int16_t>(index + 1),
                        .MaterialId = data.OneIn(4) ? data.Int16(-12, 1300) : data.Int16(1, 15),
                        .Period = data.Pick(Periods),
                        .Quantity = data.Number(0, 10),
                        .Unit = data.Int16(0, 3),
                        .Active = !data.OneIn(4)};
    return usage;
}

/// Left out two times in three.
template <class Value> std::optional<Value> Maybe(RandomData& data, const Value& value) {
    return data.OneIn(3) ? std::optional<Value>(value) : std::nullopt;
}

std::vector<MaterialRecord> Scan(const std::vector<MaterialRecord>& all, const MaterialFilter& filter) {
    std::vector<MaterialRecord> found;
    for (const MaterialRecord& material : all) {
        bool matches = material.Active == filter.Active;
        if (filter.MaterialId && material.MaterialId != *filter.MaterialId) matches = false;
        if (filter.CustomId && !IsSameText(*filter.CustomId, material.CustomId)) matches = false;
        if (filter.MaterialType && !IsSameText(*filter.MaterialType, material.MaterialType)) matches = false;
        if (filter.ApplicationMethod && !IsSameText(*filter.ApplicationMethod, material.ApplicationMethod))
            matches = false;
        if (matches) found.push_back(material);
    }
    return found;
}

std::vector<UsageRecord> Scan(const std::vector<UsageRecord>& all,
                              const std::vector<MaterialRecord>& materials, const UsageFilter& filter) {
    std::vector<UsageRecord> found;
    std::string seen;
    for (const UsageRecord& usage : all) {
        const std::string period = Trimmed(usage.Period);
        const std::size_t slash = period.find('/');
        const std::string month = period.substr(0, slash);
        std::string year = slash == std::string::npos ? "" : period.substr(slash + 1);
        year = year.substr(0, year.find('/'));
        bool matches = true;
        if (filter.UsageId && usage.UsageId != *filter.UsageId) matches = false;
        if (filter.Periods &&
            Upper("|" + *filter.Periods + "|").find(Upper("|" + period + "|")) == std::string::npos)
            matches = false;
        if (filter.MaterialId && usage.MaterialId != *filter.MaterialId) matches = false;
        if (filter.MaterialText) {
            const auto material = Scan(materials, {.MaterialId = usage.MaterialId});
            if (material.empty() || !IsSameText(material.front().CustomId, *filter.MaterialText))
                matches = false;
        }
        if (filter.Year && !IsSameText(*filter.Year, year)) matches = false;
        if (filter.Month && !IsSameText(*filter.Month, month)) matches = false;
        if (filter.OneRecordPerMaterial && matches) {
            const std::string number = std::to_string(usage.MaterialId);
            if (seen.find(number) != std::string::npos) {
                matches = false;
            } else {
                seen += number + "|";
            }
        }
        if (matches && usage.Active == filter.Active) found.push_back(usage);
    }
    return found;
}

TEST(FinderProperties, TheMaterialFinderAgreesWithAPlainScan) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const std::vector<MaterialRecord> all = Materials(data);
        MemoryProgram program;
        program.File(MaterialsFile(program.App)) = FileOf(MaterialLayout, all);
        for (int times = 0; times < 10; ++times) {
            const MaterialFilter filter{.MaterialId = Maybe(data, data.Int16(1, 15)),
                                        .CustomId = Maybe(data, data.Pick(Ids)),
                                        .MaterialType = Maybe(data, data.Pick(Types)),
                                        .ApplicationMethod = Maybe(data, data.Pick(Methods)),
                                        .Active = !data.OneIn(4)};
            const std::vector<MaterialRecord> expected = Scan(all, filter);
            std::vector<MaterialRecord> found;
            EXPECT_EQ(FindMaterials(program.App, filter, found), !expected.empty());
            EXPECT_TRUE(AreSameRecords(MaterialLayout, found, expected));
        }
        EXPECT_TRUE(program.Prompts.Shown.empty());
    });
}

TEST(FinderProperties, TheUsageFinderAgreesWithAPlainScan) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const std::vector<MaterialRecord> materials = Materials(data);
        const std::vector<UsageRecord> all = Usage(data);
        MemoryProgram program;
        program.File(MaterialsFile(program.App)) = FileOf(MaterialLayout, materials);
        program.File(UsageFile(program.App)) = FileOf(UsageLayout, all);
        for (int times = 0; times < 10; ++times) {
            const std::string months = data.Pick(Periods) + "|" + data.Pick(Periods) + "|";
            const UsageFilter filter{
                .UsageId = data.OneIn(4) ? Maybe(data, data.Int16(1, 40)) : std::nullopt,
                .Periods = Maybe(data, data.OneIn(3) ? data.Pick(Periods) : months),
                .MaterialId = data.OneIn(2) ? Maybe(data, data.Int16(1, 15)) : std::nullopt,
                .MaterialText = Maybe(data, data.Pick(Ids)),
                .Year = Maybe<std::string>(data, data.Pick<std::string>({"2005", " 2006 ", "", "b"})),
                .Month = Maybe<std::string>(data, data.Pick<std::string>({"3", "03", " 12", ""})),
                .OneRecordPerMaterial = data.OneIn(2),
                .Active = !data.OneIn(4)};
            const std::vector<UsageRecord> expected = Scan(all, materials, filter);
            std::vector<UsageRecord> found;
            EXPECT_EQ(FindUsage(program.App, filter, found), !expected.empty());
            EXPECT_TRUE(AreSameRecords(UsageLayout, found, expected));
        }
        EXPECT_TRUE(program.Prompts.Shown.empty());
    });
}

} // namespace
} // namespace mact
