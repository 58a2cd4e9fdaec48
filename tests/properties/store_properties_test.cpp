#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "tests/support/memory_program.h"
#include "tests/support/random_data.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {

// Saves, changes and deletions in random order, compared with a list of what must be in the files.

namespace {

constexpr unsigned Cases = 100;

/// A text as it reads back from a field of `length` characters, trimmed.
std::string Stored(const std::string& text, std::size_t length) {
    return std::string(Trim(std::string_view(text).substr(0, length)));
}

class Shop {
public:
    explicit Shop(unsigned seed) : m_data(seed) {}

    void DoSomething() {
        switch (m_data.Int(1, 6)) {
        case 1:
        case 2:
            KeepMaterial();
            break;
        case 3:
        case 4:
            KeepUsage();
            break;
        case 5:
            RemoveMaterial();
            break;
        default:
            RemoveUsage();
        }
    }
    /// The live and the deleted records found are those of the list.
    void Compare() {
        EXPECT_EQ(m_program.File(MaterialsFile(m_program.App)).size(), m_materials.size() * 1444);
        EXPECT_EQ(m_program.File(UsageFile(m_program.App)).size(), m_usage.size() * 32);
        for (const bool isLive : {true, false}) {
            std::vector<MaterialRecord> materials;
            FindMaterials(m_program.App, {.Active = isLive}, materials);
            for (MaterialRecord& material : materials)
                for (auto text : {&MaterialRecord::CustomId, &MaterialRecord::MaterialType,
                                  &MaterialRecord::ApplicationMethod, &MaterialRecord::Comments,
                                  &MaterialRecord::Description})
                    material.*text = Trim(material.*text);
            EXPECT_TRUE(AreSameRecords(MaterialLayout, materials, Only(m_materials, isLive)));
            std::vector<UsageRecord> usage;
            FindUsage(m_program.App, {.Active = isLive}, usage);
            for (UsageRecord& record : usage)
                record.Period = Trim(record.Period);
            EXPECT_TRUE(AreSameRecords(UsageLayout, usage, Only(m_usage, isLive)));
        }
    }

private:
    template <class Record> static std::vector<Record> Only(const std::vector<Record>& all, bool isLive) {
        std::vector<Record> some;
        std::ranges::copy_if(all, std::back_inserter(some),
                             [&](const Record& record) { return record.Active == isLive; });
        return some;
    }
    /// A record's number, or the one after the last.
    template <class Record> std::int16_t Number(const std::vector<Record>& records) {
        return m_data.Int16(1, static_cast<int>(records.size()) + 1);
    }

    void KeepMaterial() {
        MaterialEntry entry{.CustomId = m_data.Text(120),
                            .Description = m_data.Text(120),
                            .MaterialType = m_data.Text(110),
                            .ApplicationMethod = m_data.Text(110),
                            .Density = m_data.Number(0, 20),
                            .HapContent = m_data.Number(0, 100),
                            .EmissionFactor = m_data.Number(0, 50),
                            .Comments = m_data.Text(300),
                            .Filler = m_data.Number(0, 60)};
        MaterialRecord material{.MaterialId = Number(m_materials),
                                .CustomId = Stored(Stored(entry.CustomId, 300), 100),
                                .MaterialType = Stored(entry.MaterialType, 100),
                                .ApplicationMethod = Stored(entry.ApplicationMethod, 100),
                                .Density = entry.Density,
                                .HapContent = entry.HapContent,
                                .EmissionFactor = entry.EmissionFactor,
                                .Comments = Stored(entry.Comments, 255),
                                .Description = Stored(entry.Description, 100),
                                .Filler = entry.Filler};
        for (std::size_t index = 0; index < 6; ++index) {
            material.*PollutantContents[index] = m_data.Number(0, 100);
            material.*PollutantFactors[index] = m_data.Number(0, 100);
            const std::string bar = index == 0 ? "" : "|";
            entry.Contents += bar + NumberText(material.*PollutantContents[index]);
            entry.Factors += bar + NumberText(material.*PollutantFactors[index]);
        }
        const bool isNew = material.MaterialId > static_cast<int>(m_materials.size());
        EXPECT_FALSE(
            SaveMaterial(m_program.App, entry, isNew ? std::nullopt : std::optional(material.MaterialId)));
        Keep(m_materials, material.MaterialId, material);
    }
    void KeepUsage() {
        UsageRecord usage{.UsageId = Number(m_usage),
                          .MaterialId = Number(m_materials),
                          .Period = m_data.Text(9),
                          .Quantity = m_data.Number(-5, 500),
                          .Unit = m_data.Int16(1, 2)};
        UsageRecord saved = usage;
        if (usage.UsageId > static_cast<int>(m_usage.size())) saved.UsageId = 0;
        EXPECT_FALSE(SaveUsage(m_program.App, saved));
        usage.Period = Stored(usage.Period, 7);
        Keep(m_usage, usage.UsageId, usage);
    }
    void RemoveMaterial() {
        const std::int16_t number = Number(m_materials);
        const bool isUsed = std::ranges::any_of(
            m_usage, [&](const UsageRecord& usage) { return usage.Active && usage.MaterialId == number; });
        const bool isDeleted = !isUsed && IsLive(m_materials, number);
        EXPECT_EQ(DeleteMaterial(m_program.App, number,
                                 [&](std::int16_t id) { return IsMaterialUsed(m_program.App, id); }),
                  !isDeleted);
        if (isDeleted) m_materials[static_cast<std::size_t>(number - 1)].Active = false;
    }
    void RemoveUsage() {
        const std::int16_t number = Number(m_usage);
        const bool isLive = IsLive(m_usage, number);
        EXPECT_EQ(DeleteUsage(m_program.App, number), !isLive);
        if (isLive) m_usage[static_cast<std::size_t>(number - 1)].Active = false;
    }

    template <class Record> static bool IsLive(const std::vector<Record>& records, std::int16_t number) {
        const auto index = static_cast<std::size_t>(number - 1);
        return index < records.size() && records[index].Active;
    }
    template <class Record>
    static void Keep(std::vector<Record>& records, std::int16_t number, const Record& record) {
        const auto index = static_cast<std::size_t>(number - 1);
        if (index == records.size()) records.emplace_back();
        records[index] = record;
    }

    RandomData m_data;
    MemoryProgram m_program;
    std::vector<MaterialRecord> m_materials; ///< what must be in the file
    std::vector<UsageRecord> m_usage;
};

TEST(StoreProperties, WhatIsSavedIsFoundUntilItIsDeleted) {
    ForEachSeed(Cases, [](unsigned seed) {
        Shop shop(seed);
        for (int step = 0; step < 30; ++step)
            shop.DoSomething();
        shop.Compare();
    });
}

} // namespace
} // namespace mact
