#include "base/text.h"
#include "materials/material_store.h"
#include "reports/reports.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "tests/transfer/transfer_fixture.h"
#include "usage/usage_store.h"

namespace mact {
namespace {

constexpr const char* CompaniesName = "companies.talvor";

class LimitsTest : public TransferTest {
protected:
    static MaterialEntry Entry() {
        return {.CustomId = "new", .Contents = "1|2|3|4|5|6", .Factors = "1|2|3|4|5|6"};
    }
    static UsageRecord Use(std::int16_t usageId = 0) {
        return {.UsageId = usageId, .MaterialId = 1, .Period = "1/2031", .Quantity = 2, .Unit = UnitLbs};
    }
    static Result<bool> IsNotUsed(std::int16_t) { return false; }

    /// Expects `act` to show one failure that names the file and the reason.
    template <class Act>
    void ExpectFailure(const std::filesystem::path& file, const std::string& reason, const Act& act) {
        Prompts.Shown.clear();
        act();
        ASSERT_EQ(Prompts.Shown.size(), 1U) << testing::PrintToString(ShownTexts());
        EXPECT_EQ(Prompts.Shown[0].Kind, PromptKind::Failure);
        EXPECT_NE(Prompts.LastText().find('"' + PathText(file) + "\": " + reason), std::string::npos)
            << Prompts.LastText();
    }
    void ExpectNotWorkedWith(const std::filesystem::path& file, const std::string& reason) {
        const std::vector<std::function<void()>> ofMaterials = {
            [&] { EXPECT_TRUE(SaveMaterial(App, Entry())); },
            [&] { EXPECT_TRUE(SaveMaterial(App, Entry(), 1)); },
            [&] { EXPECT_TRUE(DeleteMaterial(App, 1, IsNotUsed)); },
            [&] { EXPECT_TRUE(Materials().empty()); },
            [&] { ImportMaterials(GoodMaterial("new")); },
            [&] { ExportMaterials(); },
            [&] { EXPECT_EQ(GenerateCompliantMaterialsReport(App, {}), ReportFailed); },
        };
        const std::vector<std::function<void()>> ofUsage = {
            [&] { EXPECT_TRUE(SaveUsage(App, Use())); },
            [&] { EXPECT_TRUE(SaveUsage(App, Use(1))); },
            [&] { EXPECT_TRUE(DeleteUsage(App, 1)); },
            [&] { EXPECT_TRUE(Usage().empty()); },
            [&] {
                EXPECT_TRUE(DeleteMaterial(App, 1, [&](std::int16_t id) { return IsMaterialUsed(App, id); }));
            },
            [&] { ImportUsage("A|1|2031|2|lbs\r\n"); },
            [&] { ExportUsage(); },
            [&] { EXPECT_EQ(GenerateWeightedAverageReport(App, {.EndText = "1/2031"}), ReportFailed); },
        };
        const std::vector<std::function<void()>> ofCompanies = {
            [&] { EXPECT_TRUE(ShowFailure(App, AddNewCompany(App, "Acme", "Dock 1"))); },
            [&] { SaveCompany(App, "Acme", "Dock 1", 1); },
            [&] {
                std::vector<CompanyRecord> found;
                EXPECT_FALSE(FindCompanies(App, {}, found));
            },
        };
        const bool isMaterials = file == MaterialData();
        for (const auto& act : isMaterials ? ofMaterials : file == UsageData() ? ofUsage : ofCompanies)
            ExpectFailure(file, reason, act);
    }
};

TEST_F(LimitsTest, AFolderInADataFilesPlaceIsToldByEachOperationAndStays) {
    for (const auto& file : {MaterialData(), UsageData(), DataFile(CompaniesName)}) {
        SCOPED_TRACE(file);
        std::filesystem::create_directory(file);
        ExpectNotWorkedWith(file, "Is a directory.");
        EXPECT_TRUE(std::filesystem::is_empty(file));
        std::filesystem::remove(file);
    }
}

TEST_F(LimitsTest, AFolderInThePlaceOfTheNamesIsToldAndStays) {
    std::filesystem::create_directory(DataFile("1_additional.talvor"));
    ExpectFailure(DataFile("1_additional.talvor"), "Is a directory.", [&] { LoadAdditionalNames(App); });
    ExpectFailure(DataFile("1_additional.talvor"), "Is a directory.", [&] {
        EXPECT_TRUE(ShowFailure(App, SaveAdditionalNames(App, {"a", "b", "c", "d", "e", "f"})));
    });
    EXPECT_TRUE(std::filesystem::is_directory(DataFile("1_additional.talvor")));
    EXPECT_FALSE(std::filesystem::exists(TemporaryFor(DataFile("1_additional.talvor"))));
}

TEST_F(LimitsTest, AFileOf40000SlotsIsToldByEachOperationAndIsNotWritten) {
    const std::pair<std::filesystem::path, std::uint64_t> files[] = {
        {MaterialData(),          1444},
        {UsageData(),             32  },
        {DataFile(CompaniesName), 504 }
    };
    for (const auto& [file, slotLength] : files) {
        SCOPED_TRACE(file);
        WriteContent(file, "");
        std::filesystem::resize_file(file, 40000 * slotLength);
        const auto written = std::filesystem::last_write_time(file);
        ExpectNotWorkedWith(file, "it has 40000 records, and 32767 is the most");
        EXPECT_EQ(std::filesystem::last_write_time(file), written);
        std::filesystem::remove(file);
    }
}

TEST_F(LimitsTest, AMaterialTypeTableOf40000SlotsIsToldByEachOperationAndIsNotWritten) {
    AddMaterial("A");
    ASSERT_FALSE(SaveUsage(App, Use()));
    const std::filesystem::path table = DataFile("hapcontents.talvor");
    std::filesystem::resize_file(table, std::uint64_t{40000} * 232);
    const auto written = std::filesystem::last_write_time(table);
    const std::string reason = "it has 40000 records, and 32767 is the most";
    const std::string materials = ContentOf(MaterialData());
    ExpectFailure(table, reason, [&] { ImportMaterials(GoodMaterial("new") + GoodMaterial("newer")); });
    EXPECT_TRUE(ContentOf(MaterialData()) == materials);
    for (const auto generate :
         {GenerateCompliantMaterialsReport, GenerateWeightedAverageReport, GenerateEmissionAverageReport})
        ExpectFailure(table, reason, [&] { EXPECT_EQ(generate(App, {.EndText = "1/2031"}), ReportFailed); });
    EXPECT_EQ(CountNamed(App.ProgramFolder, "report.htm"), 0);
    ExpectFailure(table, reason, [&] {
        std::vector<std::string> names;
        GetMaterialTypes(App, names, true);
        EXPECT_TRUE(names.empty());
    });
    EXPECT_EQ(std::filesystem::last_write_time(table), written);
}

#ifndef _WIN32
TEST_F(LimitsTest, AFullDeviceInADataFilesPlaceIsToldByEachSave) {
    for (const auto& file : {MaterialData(), UsageData(), DataFile(CompaniesName)})
        std::filesystem::create_symlink("/dev/full", file);
    const std::string reason = "No space left on device.";
    ExpectFailure(MaterialData(), reason, [&] { EXPECT_TRUE(SaveMaterial(App, Entry())); });
    ExpectFailure(MaterialData(), reason, [&] { ImportMaterials(GoodMaterial("A")); });
    ExpectFailure(UsageData(), reason, [&] { EXPECT_TRUE(SaveUsage(App, Use())); });
    ExpectFailure(DataFile(CompaniesName), reason,
                  [&] { EXPECT_TRUE(ShowFailure(App, AddNewCompany(App, "Acme", "Dock 1"))); });
}
#endif

/// Files of 32,767 records each, all live.
class AtCapacity : public LimitsTest {
protected:
    AtCapacity() {
        std::string materials;
        std::string usage;
        std::string companies;
        for (int number = 1; number <= Most; ++number) {
            const std::string id{static_cast<char>(number & 0xFF), static_cast<char>(number >> 8)};
            std::string slot = id + Padded("M-" + std::to_string(number), 100);
            slot += Padded("Production resin", 100) + Padded("Spray", 100) + Zeros(24) + Padded("", 255);
            slot += Padded("a resin", 100) + Hex("FF FF");
            slot.resize(1444, '\0');
            materials += slot;
            companies +=
                id + Padded("C-" + std::to_string(number), 250) + Padded("Dock 1", 250) + Hex("FF FF");
            usage += id + id + Padded("3/2005", 7) + Zeros(8) + Hex("02 00 FF FF") + Zeros(9);
        }
        WriteContent(MaterialData(), materials);
        WriteContent(UsageData(), usage);
        WriteContent(CompanyData, companies);
    }
    const std::filesystem::path CompanyData = DataFile(CompaniesName);
    static constexpr int Most = 32767;

    /// The slots that differ from those of `before`.
    static std::vector<int> ChangedSlots(const std::string& before, const std::string& after,
                                         std::size_t slotLength) {
        std::vector<int> changed;
        EXPECT_EQ(after.size(), before.size());
        for (std::size_t at = 0; at < before.size(); at += slotLength)
            if (before.compare(at, slotLength, after, at, slotLength) != 0)
                changed.push_back(static_cast<int>(at / slotLength) + 1);
        return changed;
    }
};

TEST_F(AtCapacity, OneMoreRecordIsRefusedAndNothingIsWritten) {
    const std::string materials = ContentOf(MaterialData());
    const std::string usage = ContentOf(UsageData());
    const std::string companies = ContentOf(CompanyData);
    const std::string reason = "it is full, with 32767 records.";
    ExpectFailure(MaterialData(), reason, [&] { EXPECT_TRUE(SaveMaterial(App, Entry())); });
    ExpectFailure(UsageData(), reason, [&] { EXPECT_TRUE(SaveUsage(App, Use())); });
    ExpectFailure(CompanyData, reason,
                  [&] { EXPECT_TRUE(ShowFailure(App, AddNewCompany(App, "Acme", "Dock 1"))); });
    EXPECT_TRUE(ContentOf(MaterialData()) == materials);
    EXPECT_TRUE(ContentOf(UsageData()) == usage);
    EXPECT_TRUE(ContentOf(CompanyData) == companies);
}

TEST_F(AtCapacity, AnImportOfMoreStopsWithOneMessageAtItsFirstGoodLine) {
    ExpectFailure(MaterialData(), "it is full", [&] {
        ImportMaterials("bad\r\n" + GoodMaterial("M-1") + GoodMaterial("new") + GoodMaterial("newer"));
    });
    EXPECT_EQ(Processed, 2);
    EXPECT_EQ(Errors, 2);
    ExpectFailure(UsageData(), "it is full",
                  [&] { ImportUsage("bad\r\nM-1|1|2031|2|lbs\r\nM-2|1|2031|2|lbs\r\n"); });
    EXPECT_EQ(Processed, 1);
    EXPECT_EQ(Errors, 1);
    EXPECT_EQ(std::filesystem::file_size(MaterialData()), 32767U * 1444);
    EXPECT_EQ(std::filesystem::file_size(UsageData()), 32767U * 32);
}

TEST_F(AtCapacity, TheLastRecordIsEditedAndAnotherDeleted) {
    const std::string materials = ContentOf(MaterialData());
    const std::string usage = ContentOf(UsageData());
    const std::string companies = ContentOf(CompanyData);
    EXPECT_FALSE(SaveMaterial(App, Entry(), Most));
    EXPECT_FALSE(DeleteMaterial(App, 20000, IsNotUsed));
    EXPECT_FALSE(SaveUsage(App, Use(Most)));
    EXPECT_FALSE(DeleteUsage(App, 20000));
    EXPECT_EQ(SaveCompany(App, "Acme", "Dock 2", Most), 0);
    EXPECT_EQ(ChangedSlots(materials, ContentOf(MaterialData()), 1444), (std::vector<int>{20000, Most}));
    EXPECT_EQ(ChangedSlots(usage, ContentOf(UsageData()), 32), (std::vector<int>{20000, Most}));
    EXPECT_EQ(ChangedSlots(companies, ContentOf(CompanyData), 504), (std::vector<int>{Most}));
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(AtCapacity, ListsExportsAndReportsHaveAllRecords) {
    ListLines lines;
    FillMaterialList(lines, Materials(), true);
    EXPECT_EQ(lines.size(), 32767U);
    FillUsageList(App, lines, Usage());
    ASSERT_EQ(lines.size(), 32767U);
    EXPECT_EQ(lines.back().Text, "M-32767 (3/2005)");
    EXPECT_EQ(lines.back().ItemData, Most);
    ExportMaterials();
    EXPECT_EQ(Processed, Most);
    ExportUsage();
    EXPECT_EQ(Processed, Most);
    EXPECT_EQ(ExportErrors, 0);
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_EQ(GenerateCompliantMaterialsReport(App, {.EndText = "3/2005"}), ReportPublished);
    EXPECT_NE(ContentOf(ProgramFile("report.htm")).find("M-32767 - a resin"), std::string::npos);
    EXPECT_EQ(GenerateWeightedAverageReport(App, {.EndText = "3/2005"}), ReportPublished);
    EXPECT_EQ(GenerateEmissionAverageReport(App, {.EndText = "3/2005"}), ReportPublished);
}

} // namespace
} // namespace mact
