#include "materials/material_changes.h"
#include "materials/material_store.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/safety/recorded_disk.h"
#include "tests/safety/sampling.h"
#include "tests/support/memory_program.h"
#include "transfer/transfer.h"
#include "usage/usage_changes.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace mact {
namespace {

/// A program whose files are in memory, and noted step by step.
class RecordedProgram {
public:
    RecordedProgram() = default;
    explicit RecordedProgram(const DiskContent& disk) {
        for (const auto& [path, bytes] : disk)
            Files[path] = bytes;
    }

    ScriptedPrompts Prompts;
    ScriptedSettings Settings;
    ScriptedPrograms Programs;
    ScriptedDialogs Dialogs;
    ScriptedClock Calendar;
    RecordedFiles Files;
    AppContext App{Prompts, Settings, Programs, Dialogs, Calendar, Files, "no such folder/program", 1};
};

/// All that the program reads, each record as its bytes.
std::vector<std::string> Picture(AppContext& app) {
    std::vector<std::string> picture;
    EXPECT_TRUE(VisitMaterials(app, [&](const MaterialRecord& material) {
        picture.push_back("material " + Pack(MaterialLayout, material));
    }));
    EXPECT_TRUE(VisitUsage(
        app, [&](const UsageRecord& usage) { picture.push_back("usage " + Pack(UsageLayout, usage)); }));
    std::vector<CompanyRecord> companies;
    FindCompanies(app, {}, companies);
    for (const CompanyRecord& company : companies)
        picture.push_back("company " + Pack(CompanyLayout, company));
    const Result<std::vector<HapContentRecord>> table = ReadHapContents(app);
    EXPECT_TRUE(table);
    for (const HapContentRecord& row : *table)
        picture.push_back("row " + Pack(HapContentLayout, row));
    EXPECT_TRUE(ReadAdditionalNames(app));
    picture.push_back("names " + app.AdditionalNames);
    return picture;
}

MaterialEntry MaterialNamed(const std::string& customId) {
    return {.CustomId = customId,
            .Description = "a laminating resin",
            .MaterialType = "Production resin",
            .ApplicationMethod = "Spray",
            .Density = 9.3,
            .HapContent = 27,
            .Contents = "27|0|0|0|0|0",
            .Factors = "16|0|0|0|0|0"};
}

bool IsUnused(std::int16_t /*materialId*/) {
    return false;
}

/// Three materials and companies, and forty usage records: a file of more than a sector each.
void FillShop(RecordedProgram& program) {
    ASSERT_TRUE(CreateDefaultHapContents(program.App));
    for (const char* name : {"PR-1", "PR-2", "PR-3"}) {
        ASSERT_FALSE(SaveMaterial(program.App, MaterialNamed(name)));
        ASSERT_TRUE(AddNewCompany(program.App, name, "Dock 1"));
    }
    for (int record = 0; record < 40; ++record)
        ASSERT_FALSE(SaveUsage(program.App, {.MaterialId = 1,
                                             .Period = std::to_string(record % 12 + 1) + "/" +
                                                       std::to_string(2000 + record / 12),
                                             .Quantity = 100.5,
                                             .Unit = UnitLbs}));
    ASSERT_TRUE(SaveAdditionalNames(program.App, {"a", "b", "c", "d", "e", "f"}));
    std::string lines;
    for (int number = 1; number <= 4; ++number)
        lines +=
            "N-" + std::to_string(number) + "|new|Production resin|Spray|9|28|1|2|0|0|0|0|0|0|0|0|0|0|0\r\n";
    program.Files["materials.txt"] = lines;
    lines.clear();
    for (int month = 1; month <= 12; ++month)
        lines += "PR-2|" + std::to_string(month) + "|2031|12|lbs\r\n";
    program.Files["usage.txt"] = lines;
}

/// A data file that ends within its last record: before and from half of it on, where it counts.
template <int Surplus> void FillShopWithARest(RecordedProgram& program) {
    FillShop(program);
    program.Files[MaterialsFile(program.App)].append(Surplus, 'x');
}
/// The same for usage.
template <int Surplus> void FillShopWithARestOfUsage(RecordedProgram& program) {
    FillShop(program);
    program.Files[UsageFile(program.App)].append(Surplus, 'x');
}

/// Of the usage, in the first sector, in the second, and over the edge between them.
constexpr std::int16_t DeletedUsages[] = {3, 16, 17, 38};

void FillShopWithDeleted(RecordedProgram& program) {
    FillShop(program);
    for (const std::int16_t number : {std::int16_t{2}, std::int16_t{3}})
        ASSERT_FALSE(DeleteMaterial(program.App, number, IsUnused));
    for (const std::int16_t number : DeletedUsages)
        ASSERT_FALSE(DeleteUsage(program.App, number));
}

struct Change {
    const char* Name;
    bool (*Run)(AppContext& app);
    void (*Fill)(RecordedProgram& program) = FillShop;
};
void PrintTo(const Change& change, std::ostream* out) {
    *out << change.Name;
}

bool SaveNewMaterial(AppContext& app) {
    return !SaveMaterial(app, MaterialNamed("PR-9"));
}
bool SaveEditedMaterial(AppContext& app) {
    MaterialEntry entry = MaterialNamed("PR-9");
    entry.Comments = "edited";
    entry.Filler = 12;
    return !SaveMaterial(app, entry, 2);
}
bool DeleteFirstMaterial(AppContext& app) {
    return !DeleteMaterial(app, 1, IsUnused);
}
bool SaveNewUsage(AppContext& app) {
    return !SaveUsage(app, {.MaterialId = 2, .Period = "1/2031", .Quantity = 0.5, .Unit = UnitMgal});
}
bool SaveEditedUsage(AppContext& app) {
    return !SaveUsage(app, {.UsageId = 17, .MaterialId = 2, .Period = "1/2031", .Unit = UnitMgal});
}
bool DeleteAUsage(AppContext& app) {
    return !DeleteUsage(app, 3);
}
/// Over three sectors: one record of the first, two of the second, and two that are appended.
bool SaveSomeUsageTogether(AppContext& app) {
    std::vector<UsageChange> changes;
    for (const std::int16_t number : std::initializer_list<std::int16_t>{3, 17, 18}) {
        UsageChange& change = changes.emplace_back();
        change.AsRead = ReadUsage(app, {.UsageId = number})->front();
        change.Record = *change.AsRead;
        change.Record.Quantity = 0.5;
        change.Record.Unit = UnitMgal;
    }
    for (const std::int16_t material : std::initializer_list<std::int16_t>{2, 3})
        changes.emplace_back().Record = {.MaterialId = material, .Period = "1/2031", .Quantity = 7};
    UsageOutcome outcome;
    return !SaveUsageTogether(app, changes, outcome);
}
bool AddACompany(AppContext& app) {
    return static_cast<bool>(AddNewCompany(app, "Acme", "Dock 9"));
}
bool SaveEditedCompany(AppContext& app) {
    return SaveCompany(app, "Acme", "Dock 9", 2) == 0; // from byte 504 on: over two sectors
}
bool SaveNames(AppContext& app) {
    return static_cast<bool>(SaveAdditionalNames(app, {"MMA", "b", "c", "d", "e", "f"}));
}
bool ImportMaterials(AppContext& app) {
    int processed = 0;
    int errors = 0;
    ImportMaterialFile(app, "materials.txt", processed, errors);
    return processed == 4 && errors == 0;
}
bool ImportUsage(AppContext& app) {
    int processed = 0;
    int errors = 0;
    ImportUsageFile(app, "usage.txt", processed, errors);
    return processed == 12 && errors == 0;
}
bool UndeleteTheMaterials(AppContext& app) {
    const Result<std::vector<MaterialRecord>> deleted = ReadMaterials(app, {.Active = false});
    if (!deleted || deleted->size() != 2) return false;
    const Result<std::vector<Failure>> refused = UndeleteMaterials(app, *deleted);
    return refused && refused->empty();
}
bool UndeleteTheUsage(AppContext& app) {
    const Result<std::vector<UsageRecord>> deleted = ReadUsage(app, {.Active = false});
    if (!deleted || deleted->size() != std::size(DeletedUsages)) return false;
    const Result<std::vector<Failure>> refused = UndeleteUsage(app, *deleted);
    return refused && refused->empty();
}
/// An edit, a deletion and an addition at once.
bool TakeBackUsage(AppContext& app) {
    const Result<std::vector<UsageRecord>> live = ReadUsage(app);
    const Result<std::vector<UsageRecord>> deleted = ReadUsage(app, {.Active = false});
    if (!live || !deleted || deleted->empty()) return false;
    std::vector<UsageChange> changes = {
        {live->front(),    live->front()   },
        {deleted->front(), deleted->front()},
        {live->back(),     live->back()    }
    };
    changes[0].Record.Period = "12/1999";
    changes[0].Record.Quantity = 0.25;
    changes[1].Record.Active = true;
    changes[2].Record.Active = false;
    const Result<UsageOutcome> outcome = ChangeUsage(app, changes);
    return outcome && outcome->Refused.empty();
}

class PowerCutTest : public testing::TestWithParam<Change> {
protected:
    /// Everything is as before or as after; then the next save works, and leaves only data files.
    void Check(const DiskContent& disk, bool isOnlyNew) {
        RecordedProgram program(disk);
        const std::vector<std::string> picture = Picture(program.App);
        ASSERT_TRUE(picture == m_new || (picture == m_old && !isOnlyNew))
            << (picture == m_old ? "The change is lost." : "It is neither as before nor as after.");
        ASSERT_TRUE(SaveNewUsage(program.App) && SaveEditedCompany(program.App) &&
                    SaveNewMaterial(program.App) && SaveNames(program.App))
            << testing::PrintToString(program.Prompts.Shown.size());
        ASSERT_TRUE(program.Prompts.Shown.empty());
        const std::vector<std::string> after = Picture(program.App);
        ASSERT_EQ(after.size(), picture.size() + 2);
        const std::set<std::string> there(after.begin(), after.end());
        const auto isGone = [&](const std::string& entry) { return !there.contains(entry); };
        ASSERT_LE(std::ranges::count_if(picture, isGone), 2); // the company and the names
        for (const auto& [path, bytes] : program.Files.Contents())
            ASSERT_TRUE(path.extension() == ".talvor" || path.extension() == ".txt") << path;
    }

    /// Every subset of what is not on the disk for sure, or a sample of them.
    void CheckSubsets(const PowerCut& cut, bool isOnlyNew) {
        constexpr std::size_t mostCounted = 10;
        if (cut.OpenCount() <= mostCounted) {
            for (std::uint32_t subset = 0; subset < 1U << cut.OpenCount(); ++subset) {
                std::uint32_t rest = subset;
                CheckOne(cut, isOnlyNew, [&] {
                    const bool isThere = (rest & 1U) != 0;
                    rest >>= 1U;
                    return isThere;
                });
                if (HasFatalFailure()) return;
            }
            return;
        }
        constexpr int samples = 2000;
        for (int sample = 0; sample < samples; ++sample) {
            // From nearly nothing to nearly everything.
            std::bernoulli_distribution isThere((sample % 9 + 1) / 10.0);
            CheckOne(cut, isOnlyNew, [&] { return isThere(m_random); });
            if (HasFatalFailure()) return;
        }
    }
    void CheckOne(const PowerCut& cut, bool isOnlyNew, const std::function<bool()>& isThere) {
        ++m_checked;
        Check(cut.Content(isThere), isOnlyNew);
    }

    std::vector<std::string> m_old;
    std::vector<std::string> m_new;
    std::uint32_t m_seed = Seed();
    std::mt19937 m_random{m_seed};
    int m_checked = 0;
};

TEST_P(PowerCutTest, LeavesTheOldStateOrTheNew) {
    RecordedProgram program;
    GetParam().Fill(program);
    ASSERT_FALSE(HasFatalFailure());
    const DiskContent before = program.Files.Contents();
    m_old = Picture(program.App);
    program.Files.Steps.clear();
    ASSERT_TRUE(GetParam().Run(program.App));
    const std::vector<DiskStep> steps = program.Files.Steps;
    m_new = Picture(program.App);
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(m_seed));
    for (std::size_t count = 0; count <= steps.size(); ++count) {
        SCOPED_TRACE("the power goes after step " + std::to_string(count) + " of " +
                     std::to_string(steps.size()));
        // The program says that it is done after the last step.
        CheckSubsets(PowerCut(before, steps, count), count == steps.size());
        if (HasFatalFailure()) return;
    }
    RecordProperty("states", m_checked);
    EXPECT_GT(m_checked, static_cast<int>(steps.size()));
}

/// The power goes again while the next start takes back what was cut off.
TEST_P(PowerCutTest, WhileTheChangeIsTakenBackLeavesTheSame) {
    RecordedProgram program;
    GetParam().Fill(program);
    const DiskContent before = program.Files.Contents();
    m_old = Picture(program.App);
    program.Files.Steps.clear();
    ASSERT_TRUE(GetParam().Run(program.App));
    const std::vector<DiskStep> steps = program.Files.Steps;
    m_new = Picture(program.App);
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(m_seed));
    for (std::size_t count = 0; count < steps.size(); ++count) {
        std::bernoulli_distribution isThere(0.5);
        const DiskContent first = PowerCut(before, steps, count).Content([&] { return isThere(m_random); });
        RecordedProgram next(first);
        for (const auto& file : {MaterialsFile(next.App), UsageFile(next.App), CompaniesFile(next.App)})
            ASSERT_TRUE(RecordFile::OpenForWriting(next.Files, file,
                                                   file == UsageFile(next.App) ? UsageLayout.SlotLength()
                                                   : file == MaterialsFile(next.App)
                                                       ? MaterialLayout.SlotLength()
                                                       : CompanyLayout.SlotLength()));
        const std::vector<DiskStep> taken = next.Files.Steps;
        for (std::size_t second = 0; second <= taken.size(); ++second) {
            SCOPED_TRACE("after step " + std::to_string(count) + " and again after " +
                         std::to_string(second));
            CheckSubsets(PowerCut(first, taken, second), false);
            if (HasFatalFailure()) return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Changes, PowerCutTest,
    testing::Values(
        Change{"SaveNewMaterial", SaveNewMaterial},
        Change{"SaveNewMaterialBehindAShortLastOne", SaveNewMaterial, FillShopWithARest<1000>},
        Change{"SaveNewMaterialOverSurplusBytes", SaveNewMaterial, FillShopWithARest<300>},
        Change{"SaveEditedMaterial", SaveEditedMaterial}, Change{"DeleteMaterial", DeleteFirstMaterial},
        Change{"SaveNewUsage", SaveNewUsage}, Change{"SaveEditedUsage", SaveEditedUsage},
        Change{"DeleteUsage", DeleteAUsage}, Change{"SaveUsageTogether", SaveSomeUsageTogether},
        Change{"SaveUsageTogetherBehindAShortLastOne", SaveSomeUsageTogether, FillShopWithARestOfUsage<20>},
        Change{"SaveUsageTogetherOverSurplusBytes", SaveSomeUsageTogether, FillShopWithARestOfUsage<10>},
        Change{"AddCompany", AddACompany}, Change{"SaveEditedCompany", SaveEditedCompany},
        Change{"SaveNames", SaveNames}, Change{"ImportMaterials", ImportMaterials},
        Change{"ImportMaterialsOverSurplusBytes", ImportMaterials, FillShopWithARest<300>},
        Change{"ImportUsage", ImportUsage},
        Change{"UndeleteMaterials", UndeleteTheMaterials, FillShopWithDeleted},
        Change{"UndeleteUsage", UndeleteTheUsage, FillShopWithDeleted},
        Change{"TakeBackUsage", TakeBackUsage, FillShopWithDeleted}),
    [](const auto& given) { return std::string(given.param.Name); });

} // namespace
} // namespace mact
