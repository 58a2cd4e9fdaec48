#include "base/text.h"
#include "materials/material_record.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"
#include "tests/support/test_program.h"
#include "usage/usage_record.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace mact {
namespace {

class DeletedCommands : public testing::Test {
protected:
    TemporaryFolder Temporary;
    std::filesystem::path Folder = Temporary.Path() / "program";
    std::filesystem::path Config = Temporary.Path() / "settings";

    DeletedCommands() {
        std::filesystem::create_directory(Folder);
        std::filesystem::create_directory(Config);
        Run({"add-company", "Acme", "Dock 1"});
        Run({"select-company", "1"});
    }
    ProgramRun Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--folder", PathText(Folder)});
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config);
    }
    std::filesystem::path File(const std::string& name) const { return Folder / "data" / name; }
    std::string Materials() const { return ContentOf(File("1_materials.talvor")); }
    std::string Usage() const { return ContentOf(File("1_usage.talvor")); }

    static MaterialRecord Material(std::int16_t number, const std::string& customId, bool isLive) {
        return {.MaterialId = number, .CustomId = customId, .Active = isLive};
    }
    static UsageRecord Use(std::int16_t number, std::int16_t material, const std::string& period,
                           double quantity, std::int16_t unit, bool isLive) {
        return {number, material, period, quantity, unit, isLive};
    }
    void WriteMaterials(const std::vector<MaterialRecord>& materials) const {
        std::string slots;
        for (const MaterialRecord& material : materials)
            slots += Pack(MaterialLayout, material);
        WriteContent(File("1_materials.talvor"), slots);
    }
    void WriteUsage(const std::vector<UsageRecord>& records) const {
        std::string slots;
        for (const UsageRecord& usage : records)
            slots += Pack(UsageLayout, usage);
        WriteContent(File("1_usage.talvor"), slots);
    }
    /// Materials 2, 3 and 5 are deleted, and 5 has the Material ID of 1. Usage 1, 3, 4, 5, 6 and 7 is
    /// deleted.
    void AddShop() const {
        WriteMaterials({Material(1, "PR-101", true), Material(2, "GC-\xE9", false), Material(3, "R-3", false),
                        Material(4, "R-4", true), Material(5, "pr-101", false)});
        WriteUsage({Use(1, 1, "3/2005", 120.5, UnitLbs, false), Use(2, 1, "4/2005", 10, UnitLbs, true),
                    Use(3, 2, "3/2005", 0.3, UnitMgal, false), Use(4, 9, "5/2005", 7, 6, false),
                    Use(5, 4, "12/2005", 1, UnitLbs, false), Use(6, 1, "4/2005", 11, UnitLbs, false),
                    Use(7, 1, "3/2005", 121, UnitLbs, false)});
    }
};

TEST_F(DeletedCommands, EachDeletedRecordIsALine) {
    AddShop();
    const auto before = FilesIn(Folder / "data");
    const ProgramRun run = Run({"deleted"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(run.Output, "materials|2|GC-\u00E9\n"
                          "materials|3|R-3\n"
                          "materials|5|pr-101\n"
                          "usage|1|PR-101|3/2005|120.5|lbs\n"
                          "usage|3|GC-\u00E9|3/2005|0.3|Mgal\n"
                          "usage|4||5/2005|7|lbs\n"
                          "usage|5|R-4|12/2005|1|lbs\n"
                          "usage|6|PR-101|4/2005|11|lbs\n"
                          "usage|7|PR-101|3/2005|121|lbs\n");
    EXPECT_EQ(FilesIn(Folder / "data"), before);
}

TEST_F(DeletedCommands, WithoutRecordsThereIsNoLineAndNoFileIsCreated) {
    const auto before = FilesIn(Folder / "data");
    const ProgramRun run = Run({"deleted"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(FilesIn(Folder / "data"), before);
}

TEST_F(DeletedCommands, ControlCharactersArePrintedAsQuestionMarks) {
    WriteMaterials({Material(1, "A\x1B[2J\x8D", false)});
    WriteUsage({Use(1, 1, "3\n2005", 1, UnitLbs, false)});
    EXPECT_EQ(Run({"deleted"}).Output, "materials|1|A?[2J?\nusage|1|A?[2J?|3?2005|1|lbs\n");
    EXPECT_EQ(Run({"undelete", "materials", "1"}).Output, "materials|1|A?[2J?\n");
}

TEST_F(DeletedCommands, TheRecordsOfTheCurrentCompanyAlone) {
    AddShop();
    Run({"add-company", "Beta", "Dock 2"});
    EXPECT_EQ(Run({"--company", "2", "deleted"}).Output, "");
    EXPECT_EQ(Run({"--company", "2", "undelete", "materials", "2"}).Status, 4);
}

TEST_F(DeletedCommands, AMaterialComesBack) {
    AddShop();
    std::string expected = Materials();
    expected.replace(1444 + 681, 2, Hex("FF FF"));
    const std::string usage = Usage();
    const ProgramRun run = Run({"undelete", "materials", "2"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "materials|2|GC-\u00E9\n");
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(Materials(), expected);
    EXPECT_EQ(Usage(), usage);
    EXPECT_FALSE(std::filesystem::exists(File("1_materials.talvor.mact.undo")));
}

TEST_F(DeletedCommands, SeveralComeBackTogetherAndOneThatIsNamedTwiceOnce) {
    AddShop();
    std::string expected = Usage();
    expected.replace(21, 2, Hex("FF FF"));
    expected.replace(4 * 32 + 21, 2, Hex("FF FF"));
    const ProgramRun run = Run({"undelete", "usage", "5", "1", "5"});
    EXPECT_EQ(run.Status, 0) << run.Errors;
    EXPECT_EQ(run.Output, "usage|1|PR-101|3/2005|120.5|lbs\nusage|5|R-4|12/2005|1|lbs\n");
    EXPECT_EQ(Usage(), expected);
    EXPECT_EQ(Run({"deleted"}).Output.find("usage|5|"), std::string::npos);
}

TEST_F(DeletedCommands, UsageComesBackOnceItsMaterialHas) {
    AddShop();
    const ProgramRun refused = Run({"undelete", "usage", "3"});
    EXPECT_EQ(refused.Status, 4);
    EXPECT_EQ(refused.Errors, "Cannot bring back usage record 3: its material 2 is deleted.\n");
    EXPECT_EQ(Run({"undelete", "materials", "2"}).Status, 0);
    EXPECT_EQ(Run({"undelete", "usage", "3"}).Output, "usage|3|GC-\u00E9|3/2005|0.3|Mgal\n");
}

TEST_F(DeletedCommands, EachRefusedRecordIsASentenceAndNoneComesBack) {
    AddShop();
    const std::string before = Usage();
    const ProgramRun run = Run({"undelete", "usage", "1", "2", "3", "4", "5", "6", "7", "8"});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(
        run.Errors,
        "Cannot bring back usage record 2: it is not deleted.\n"
        "Cannot bring back usage record 3: its material 2 is deleted.\n"
        "Cannot bring back usage record 4: its material 9 does not exist.\n"
        "Cannot bring back usage record 6: usage record 2 is of the same material and month.\n"
        "Cannot bring back usage record 7: another of these records is of the same material and month.\n"
        "Cannot bring back usage record 8: it does not exist.\n"
        "None of the records was brought back.\n");
    EXPECT_EQ(Usage(), before);
}

TEST_F(DeletedCommands, RefusedMaterialsAreASentenceEach) {
    AddShop();
    const std::string before = Materials();
    const ProgramRun run = Run({"undelete", "materials", "1", "3", "5", "6"});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Errors, "Cannot bring back material 1: it is not deleted.\n"
                          "Cannot bring back material 5: material 1 has the same Material ID.\n"
                          "Cannot bring back material 6: it does not exist.\n"
                          "None of the records was brought back.\n");
    EXPECT_EQ(Materials(), before);
}

TEST_F(DeletedCommands, AFailureIsOneSentenceAndStatus1) {
    AddShop();
    std::filesystem::remove(File("1_usage.talvor"));
    std::filesystem::create_directory(File("1_usage.talvor"));
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"deleted"},
             { "undelete", "usage", "1"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Output, "");
        EXPECT_EQ(std::ranges::count(run.Errors, '\n'), 1) << run.Errors;
        EXPECT_NE(run.Errors.find("1_usage.talvor"), std::string::npos) << run.Errors;
    }
}

TEST_F(DeletedCommands, WithoutACompanyTheySayToChooseOne) {
    WriteContent(Config / "MACT" / "TALVOR_QUME_APP.conf", "");
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"deleted"},
             { "undelete", "usage", "1"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 1);
        EXPECT_NE(run.Errors.find("No company is selected."), std::string::npos);
    }
}

TEST_F(DeletedCommands, AnythingButAFileAndNumbersIsWrongUse) {
    AddShop();
    const std::string before = Usage();
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"undelete"  },
             {           "undelete",     "usage"},
             {           "undelete", "companies", "1"},
             {        "undelete",   "usage", "0"},
             {"undelete",            "usage", "-1"},
             {                 "undelete",        "usage", "32768"},
             {                  "undelete","usage", "65537"},
             { "undelete",   "usage", "1", "x"},
             {"deleted",            "usage"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(run.Output, "");
        EXPECT_EQ(std::ranges::count(run.Errors, '\n'), 1) << run.Errors;
    }
    EXPECT_EQ(Usage(), before);
}

TEST_F(DeletedCommands, TheHelpSaysThatItIsAllOrNone) {
    const ProgramRun run = Run({"undelete", "--help"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(run.Output.find("all that are named or, if one is refused, none"), std::string::npos);
}

} // namespace
} // namespace mact
