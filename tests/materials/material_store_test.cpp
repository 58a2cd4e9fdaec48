#include "base/text.h"
#include "materials/material_store.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Ids = std::vector<int>;

class MaterialStoreTest : public testing::Test, public TestProgram {
protected:
    const std::filesystem::path File = DataFile("1_materials.talvor");

    static MaterialEntry Entry(const std::string& customId) {
        return {.CustomId = customId,
                .Description = "Resin " + customId,
                .MaterialType = "Production resin",
                .ApplicationMethod = "Spray",
                .Density = 9.2,
                .HapContent = 35,
                .Contents = "0|0|0|0|0|0",
                .Factors = "0|0|0|0|0|0"};
    }
    void Save(const std::string& customId) { EXPECT_FALSE(SaveMaterial(App, Entry(customId))); }
    Ids Found(const MaterialFilter& filter) {
        std::vector<MaterialRecord> results;
        const bool isFound = FindMaterials(App, filter, results);
        EXPECT_EQ(isFound, !results.empty());
        Ids ids;
        for (const MaterialRecord& material : results)
            ids.push_back(material.MaterialId);
        return ids;
    }
    Failed Delete(std::int16_t materialId) {
        return DeleteMaterial(App, materialId, [](std::int16_t) -> Result<bool> { return false; });
    }
};

TEST_F(MaterialStoreTest, AnAbsentFileHasNoMaterialsAndTheFirstGetsNumber1) {
    EXPECT_EQ(Found({}), Ids{});
    Save("GC-100");
    EXPECT_EQ(std::filesystem::file_size(File), 1444U);
    EXPECT_EQ(Found({}), Ids{1});
    EXPECT_EQ(ContentOf(File).substr(0, 102), Hex("01 00") + Padded("GC-100", 100));
}

TEST_F(MaterialStoreTest, ADeletedMaterialKeepsItsNumber) {
    for (const char* id : {"A", "B", "C", "D", "E"})
        Save(id);
    EXPECT_FALSE(Delete(3));
    Save("F");
    EXPECT_EQ(Found({}), (Ids{1, 2, 4, 5, 6}));
    EXPECT_EQ(Found({.Active = false}), Ids{3});
}

TEST_F(MaterialStoreTest, TextFiltersIgnoreCaseAndBlanksAround) {
    Save("GC-100");
    Save("GC-1000");
    EXPECT_EQ(Found({.CustomId = "  gc-100 "}), Ids{1});
    EXPECT_EQ(Found({.MaterialType = "PRODUCTION resin "}), (Ids{1, 2}));
    EXPECT_EQ(Found({.ApplicationMethod = "spray"}), (Ids{1, 2}));
    EXPECT_EQ(Found({.ApplicationMethod = "non-spray"}), Ids{});
}

TEST_F(MaterialStoreTest, FiltersAreAllToBePassed) {
    Save("A");
    Save("B");
    EXPECT_EQ(Found({.MaterialId = std::int16_t{2}, .CustomId = "B"}), Ids{2});
    EXPECT_EQ(Found({.MaterialId = std::int16_t{2}, .CustomId = "A"}), Ids{});
}

TEST_F(MaterialStoreTest, NoMatchLeavesThePreviousResults) {
    Save("A");
    std::vector<MaterialRecord> results(2);
    EXPECT_FALSE(FindMaterials(App, {.CustomId = "B"}, results));
    EXPECT_EQ(results.size(), 2U);
    EXPECT_TRUE(FindMaterials(App, {.CustomId = "A"}, results));
    EXPECT_EQ(results.size(), 1U);
}

TEST_F(MaterialStoreTest, SavingStoresEveryField) {
    MaterialEntry entry{.CustomId = "  GC-7 ",
                        .Description = "Gel coat",
                        .MaterialType = "Tooling gel coat",
                        .ApplicationMethod = "All",
                        .Density = 9.25,
                        .HapContent = 40,
                        .EmissionFactor = 0.5,
                        .Comments = "Test report",
                        .Contents = "1|2|3|4|5|6",
                        .Factors = "10|20|30|40|50|60",
                        .Filler = 12};
    EXPECT_FALSE(SaveMaterial(App, entry));
    std::vector<MaterialRecord> results;
    ASSERT_TRUE(FindMaterials(App, {}, results));
    const MaterialRecord& material = results[0];
    EXPECT_EQ(material.CustomId, "GC-7");
    EXPECT_EQ(material.Description, "Gel coat");
    EXPECT_EQ(material.MaterialType, "Tooling gel coat");
    EXPECT_EQ(material.ApplicationMethod, "All");
    EXPECT_EQ(material.Density, 9.25);
    EXPECT_EQ(material.HapContent, 40);
    EXPECT_EQ(material.EmissionFactor, 0.5);
    EXPECT_EQ(material.Comments, "Test report");
    EXPECT_EQ(material.Filler, 12);
    for (std::size_t index = 0; index < 6; ++index) {
        EXPECT_EQ(material.*PollutantContents[index], static_cast<double>(index + 1));
        EXPECT_EQ(material.*PollutantFactors[index], static_cast<double>(10 * (index + 1)));
    }
}

TEST_F(MaterialStoreTest, ATextIsCutToItsWidthWhenStored) {
    MaterialEntry entry = Entry(std::string(120, 'x'));
    entry.Comments = std::string(300, 'c');
    EXPECT_FALSE(SaveMaterial(App, entry));
    std::vector<MaterialRecord> results;
    ASSERT_TRUE(FindMaterials(App, {}, results));
    EXPECT_EQ(results[0].CustomId, std::string(100, 'x'));
    EXPECT_EQ(results[0].Comments, std::string(255, 'c'));
}

TEST_F(MaterialStoreTest, SavingWithANumberOverwritesThatRecordOnly) {
    Save("A");
    Save("B");
    Save("C");
    const std::string before = ContentOf(File);
    EXPECT_FALSE(SaveMaterial(App, Entry("Z"), std::int16_t{2}));
    const std::string after = ContentOf(File);
    EXPECT_EQ(after.substr(0, 1444), before.substr(0, 1444));
    EXPECT_EQ(after.substr(1444, 102), Hex("02 00") + Padded("Z", 100));
    EXPECT_EQ(after.substr(2888), before.substr(2888));
}

TEST_F(MaterialStoreTest, AFileHandedInIsUsedAndClosed) {
    Result<RecordFile> file = RecordFile::OpenForWriting(App.Files, File, 1444);
    ASSERT_TRUE(file);
    EXPECT_FALSE(SaveMaterial(App, Entry("A"), {}, std::make_unique<RecordFile>(std::move(*file))));
    EXPECT_FALSE(SaveMaterial(App, Entry("B"))); // the first save has released its lock
    EXPECT_EQ(Found({}), (Ids{1, 2}));
}

class PollutantNumbersTest : public MaterialStoreTest, public testing::WithParamInterface<const char*> {};
TEST_P(PollutantNumbersTest, ThatAreNotSixNumbersAreAFailureAndNothingIsWritten) {
    MaterialEntry entry = Entry("A");
    entry.Factors = GetParam();
    EXPECT_TRUE(SaveMaterial(App, entry));
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Found({}), Ids{});
}
INSTANTIATE_TEST_SUITE_P(Materials, PollutantNumbersTest,
                         testing::Values("", "0|0|0|0|0", "0|0|0|0|0|x", "0|0||0|0|0"));

TEST_F(MaterialStoreTest, AFailedSaveSaysWhichNumberIsWrong) {
    MaterialEntry entry = Entry("GC-\xE9");
    entry.Contents = "0|x|0|0|0|0";
    EXPECT_TRUE(SaveMaterial(App, entry));
    EXPECT_EQ(Prompts.LastText(),
              "Cannot save the material \"GC-\u00E9\": the content of additional pollutant 2 is "
              "not a number.");
}

TEST_F(MaterialStoreTest, AMaterialInUseIsNotDeleted) {
    Save("A");
    const std::string before = ContentOf(File);
    EXPECT_TRUE(DeleteMaterial(App, 1, [](std::int16_t id) -> Result<bool> { return id == 1; }));
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.Shown[0].Text, "There are one or more usage records associated with this material.\r\n"
                                     "You can not delete this material untill you remove all usage records.");
    EXPECT_EQ(Prompts.Shown[0].Kind, PromptKind::Information);
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialStoreTest, AMaterialWhoseUseCannotBeToldIsNotDeleted) {
    Save("A");
    EXPECT_TRUE(
        DeleteMaterial(App, 1, [](std::int16_t) -> Result<bool> { return Failure{.Reason = "Unreadable"}; }));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Unreadable."});
    EXPECT_EQ(Found({}), Ids{1});
}

TEST_F(MaterialStoreTest, DeletingWhatIsNotThereIsRefused) {
    Save("A");
    EXPECT_FALSE(Delete(1));
    const std::string before = ContentOf(File);
    EXPECT_TRUE(Delete(1));
    EXPECT_TRUE(Delete(2));
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialStoreTest, DeletingChangesTheFlagAndTheUnusedRestOfTheSlotAlone) {
    // A slot from an earlier version: leading blanks in a text, an odd number, and old bytes after the
    // fields.
    std::string slot = Pack(MaterialLayout, {.MaterialId = 1, .CustomId = "  GC-1", .Description = " x"});
    slot.replace(302, 8, Hex("01 00 00 00 00 00 F0 7F")); // a signalling NaN as density
    std::string stored = slot;
    stored.replace(787, 3, "old");
    WriteContent(File, stored);
    EXPECT_FALSE(Delete(1));
    slot.replace(681, 2, Hex("00 00"));
    EXPECT_EQ(ContentOf(File), slot);
}

TEST_F(MaterialStoreTest, AFileThatCannotBeOpenedIsShownOncePerOperation) {
    std::filesystem::create_directory(File);
    EXPECT_EQ(Found({}), Ids{});
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_TRUE(SaveMaterial(App, Entry("A")));
    EXPECT_EQ(Prompts.Shown.size(), 2U);
    EXPECT_TRUE(Delete(1));
    EXPECT_EQ(Prompts.Shown.size(), 3U);
}

#ifndef _WIN32
TEST_F(MaterialStoreTest, AFullDiskIsAFailureOfTheSave) {
    std::filesystem::create_symlink("/dev/full", File);
    EXPECT_TRUE(SaveMaterial(App, Entry("A")));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot write to the file \"" + PathText(File) +
                                                     "\": No space left on device."});
}
#endif

TEST_F(MaterialStoreTest, AFullFileTakesNoFurtherMaterial) {
    WriteContent(File, "");
    std::filesystem::resize_file(File, std::uintmax_t{32767} * 1444);
    EXPECT_TRUE(SaveMaterial(App, Entry("A")));
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(std::filesystem::file_size(File), std::uintmax_t{32767} * 1444);
}

TEST_F(MaterialStoreTest, AShortLastSlotIsARecordWithZeroesForWhatItLacks) {
    Save("A");
    Save("B");
    std::filesystem::resize_file(File, 1444 + 800);
    EXPECT_EQ(Found({}), (Ids{1, 2}));
    Save("C");
    EXPECT_EQ(std::filesystem::file_size(File), 3U * 1444);
    EXPECT_EQ(Found({}), (Ids{1, 2, 3}));
}

TEST_F(MaterialStoreTest, EachCompanyHasItsOwnFile) {
    Save("A");
    App.CurrentCompanyId = 12;
    EXPECT_EQ(Found({}), Ids{});
    Save("B");
    EXPECT_TRUE(std::filesystem::exists(DataFile("12_materials.talvor")));
    EXPECT_EQ(std::filesystem::file_size(File), 1444U);
}

MaterialRecord Material(const std::string& customId, const std::string& description) {
    return {.MaterialId = 1, .CustomId = customId, .Description = description};
}

TEST(MaterialListTest, ALineOfFiftyCharactersIsNotCut) {
    const std::string description(50 - 5, 'd');
    EXPECT_EQ(MaterialListText(Material("AB", description)), "AB - " + description);
}

TEST(MaterialListTest, ALineOf51CharactersBecomes38) {
    const std::string description(51 - 5, 'd');
    EXPECT_EQ(MaterialListText(Material("AB", description)), "AB - " + std::string(30, 'd') + "...");
}

TEST(MaterialListTest, ALongDescriptionIsCutToTheFirst35CharactersOfTheJoinedText) {
    EXPECT_EQ(MaterialListText(Material("GC-1234567", std::string(60, 'd'))),
              "GC-1234567 - " + std::string(22, 'd') + "...");
}

TEST(MaterialListTest, HasOneLinePerLiveRecordWithItsNumber) {
    ListLines list = {
        {"old", 1}
    };
    FillMaterialList(list,
                     {
                         {.MaterialId = 3, .CustomId = " A ", .Description = " x "},
                         {.MaterialId = 4, .CustomId = "B",   .Active = false     },
                         {.MaterialId = 5, .CustomId = "C",   .Description = "y"  }
    },
                     true);
    EXPECT_EQ(list, (ListLines{
                        {"A - x", 3},
                        {"C - y", 5}
    }));
    FillMaterialList(list,
                     {
                         {.MaterialId = 3, .CustomId = " A ", .Description = " x "}
    },
                     false);
    EXPECT_EQ(list, (ListLines{
                        {"A", 3}
    }));
}

} // namespace
} // namespace mact
