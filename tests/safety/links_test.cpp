#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace mact {
namespace {

/// A name that a command writes to or reads from, and another file of the program that a link there leads to.
struct LinkedName {
    const char* Name;
    std::vector<std::string> Command;
    std::string At; ///< both in the program folder
    std::string LeadsTo;
};
void PrintTo(const LinkedName& linked, std::ostream* out) {
    *out << linked.Name;
}

void MakeLink(const std::filesystem::path& link, const std::filesystem::path& to) {
    std::filesystem::create_symlink(to, link);
}
void MakeSecondName(const std::filesystem::path& name, const std::filesystem::path& of) {
    std::filesystem::create_hard_link(of, name);
}

/// A shop with a record in each file, reports and logs.
class LinkedShop : public testing::Test {
protected:
    LinkedShop() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"add-company", "Beta", "Dock 2"});
        Folder.Run({"--company", "2", "import-materials", Folder.MaterialsToImport("Beta", 2)});
        Folder.Run({"select-company", "1"});
        Folder.Run({"names", "MMA", "b", "c", "d", "e", "f"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 3)});
        Folder.Run({"import-usage", Folder.UsageToImport(2005, 3)});
        Folder.Run({"export-usage", PathText(InFolder("exported"))}); // so that its log is there
        Folder.Run({"report", "compliant"});
        WriteContent(InFolder("lines"), "not a record\r\n");
    }
    std::filesystem::path InFolder(const std::string& name) const { return Folder.Path() / name; }
    std::filesystem::path Settings() const {
        return Folder.Start({}).SettingsFolder / "MACT" / "TALVOR_QUME_APP.conf";
    }

    /// Runs the command, which fails and says so in one line that has these parts.
    void ExpectOneFailure(const std::vector<std::string>& command,
                          const std::vector<std::string>& parts) const {
        ChildProgram program(Folder.Start(command));
        EXPECT_EQ(program.Wait(), 1);
        const std::string said = program.Errors();
        EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
        for (const std::string& part : parts)
            EXPECT_NE(said.find(part), std::string::npos) << said;
    }
    /// Expects that the command fails, names both files and leaves everything as it was. Of two names of one
    /// file either may be the one that it works with.
    void ExpectRefused(const std::vector<std::string>& command, const std::filesystem::path& from,
                       const std::filesystem::path& to) const {
        const auto data = FilesIn(InFolder("data"));
        const auto written = FilesIn(Folder.Path());
        ExpectOneFailure(command,
                         {PathText(from), PathText(to), "it is a link to another file of the program"});
        EXPECT_TRUE(FilesIn(InFolder("data")) == data);
        EXPECT_TRUE(FilesIn(Folder.Path()) == written);
    }

    ProgramFolder Folder;
};

class LinksTest : public LinkedShop, public testing::WithParamInterface<LinkedName> {};

TEST_P(LinksTest, ToAnotherFileOfTheProgramAreRefusedAndNothingIsTouched) {
    const LinkedName& linked = GetParam();
    std::vector<std::string> command = linked.Command;
    for (std::string& argument : command)
        if (argument.starts_with('@')) argument = PathText(InFolder(argument.substr(1)));
    for (const auto& make : {MakeLink, MakeSecondName}) {
        std::filesystem::remove(InFolder(linked.At));
        make(InFolder(linked.At), InFolder(linked.LeadsTo));
        ExpectRefused(command, InFolder(linked.At), InFolder(linked.LeadsTo));
    }
}

// An argument that begins with "@" is a file in the program folder.
const std::vector<std::string> SaveNames = {"names", "a", "b", "c", "d", "e", "g"};
const std::string Names = "data/1_additional.talvor";
const std::string Materials = "data/1_materials.talvor";
const std::string Usage = "data/1_usage.talvor";
const std::string Types = "data/hapcontents.talvor";
const std::string Companies = "data/companies.talvor";
const std::string OfBeta = "data/2_materials.talvor";
const LinkedName LinkedNames[] = {
    {"ReportOfAll",       {"report", "compliant"},                                  "report.htm",                 Materials                },
    {"Report2",           {"report", "weighted-average", "--ending", "12/2005"},    "report2.htm",                Usage                    },
    {"Report3",           {"report", "emission-average", "--ending", "12/2005"},    "report3.htm",                Types                    },
    {"Report4",           {"report", "additional-usage", "--ending", "12/2005"},    "report4.htm",                Names                    },
    {"Report5",           {"report", "additional-emission", "--ending", "12/2005"}, "report5.htm",                "report.htm"             },
    {"MaterialLog",       {"import-materials", "@lines"},                           "material_import_errors.txt", Materials                },
    {"UsageLog",          {"import-usage", "@lines"},                               "usage_import_errors.txt",    Companies                },
    {"ExportLog",         {"export-usage", "@out"},                                 "usage_export_errors.txt",    "report.htm"             },
    {"ExportOverAReport", {"export-materials", "@out"},                             "out",                        "report.htm"             },
    {"ExportOverALog",    {"export-usage", "@out"},                                 "out",                        "usage_import_errors.txt"},
    {"Script",            {"backup"},                                               "backup.bat",                 Materials                },
    {"NamesSaved",        SaveNames,                                                Names,                        OfBeta                   },
    {"NamesRead",         {"names"},                                                Names,                        Materials                },
    {"CompanyAdded",      {"add-company", "C", "D"},                                Companies,                    Materials                },
    {"CompaniesListed",   {"companies"},                                            Companies,                    Materials                },
    {"MaterialsImported", {"import-materials", "@lines"},                           Materials,                    OfBeta                   },
    {"MaterialsExported", {"export-materials", "@out"},                             Materials,                    OfBeta                   },
    {"MaterialsReported", {"report", "compliant"},                                  Materials,                    OfBeta                   },
    {"UsageImported",     {"import-usage", "@lines"},                               Usage,                        Materials                },
    {"UsageExported",     {"export-usage", "@out"},                                 Usage,                        Materials                },
    {"TypesRead",         {"import-materials", "@lines"},                           Types,                        Usage                    },
};
INSTANTIATE_TEST_SUITE_P(Names, LinksTest, testing::ValuesIn(LinkedNames),
                         [](const auto& given) { return std::string(given.param.Name); });

class OtherLinksTest : public LinkedShop {};

TEST_F(OtherLinksTest, ASettingsFileThatLeadsToADataFileIsNotReplaced) {
    for (const auto& make : {MakeLink, MakeSecondName}) {
        std::filesystem::remove(Settings());
        make(Settings(), InFolder("data/1_usage.talvor"));
        ExpectRefused({"select-company", "2"}, Settings(), InFolder("data/1_usage.talvor"));
    }
}

TEST_F(OtherLinksTest, ADataFileThatLeadsToAnotherOneIsToldByTheCheck) {
    std::filesystem::remove(InFolder(Usage));
    MakeLink(InFolder(Usage), InFolder(Materials));
    ExpectRefused({"check"}, InFolder(Usage), InFolder(Materials));
}

TEST_F(OtherLinksTest, AReportThatLeadsToTheSettingsIsRefused) {
    std::filesystem::remove(InFolder("report.htm"));
    std::filesystem::create_symlink(Settings(), InFolder("report.htm"));
    ExpectRefused({"report", "compliant"}, InFolder("report.htm"), Settings());
}

TEST_F(OtherLinksTest, ToFilesOfTheUsersAreFollowed) {
    const std::filesystem::path elsewhere = Settings().parent_path().parent_path() / "elsewhere";
    std::filesystem::create_directory(elsewhere);
    const auto moveAway = [&](const std::filesystem::path& path) {
        if (std::filesystem::exists(path)) std::filesystem::rename(path, elsewhere / path.filename());
        std::filesystem::create_symlink(elsewhere / path.filename(), path);
        return path;
    };
    const std::filesystem::path moved[] = {
        moveAway(InFolder("report.htm")),
        moveAway(InFolder("material_import_errors.txt")),
        moveAway(InFolder(Materials)),
        moveAway(InFolder(Names)),
        moveAway(InFolder("out")),
        moveAway(InFolder("backup.bat")),
        moveAway(Settings()),
    };
    WriteContent(InFolder("lines"), "not a material\r\n");
    Folder.Run({"select-company", "2"});
    Folder.Run({"select-company", "1"});
    Folder.Run(SaveNames);
    ChildProgram import(Folder.Start({"import-materials", PathText(InFolder("lines"))}));
    EXPECT_EQ(import.Wait(), 4) << import.Errors();
    Folder.Run({"import-materials", Folder.MaterialsToImport("more", 2)});
    Folder.Run({"export-materials", PathText(InFolder("out"))});
    Folder.Run({"report", "compliant"});
    Folder.Run({"backup"});
    for (const std::filesystem::path& path : moved) {
        EXPECT_TRUE(std::filesystem::is_symlink(path)) << path;
        EXPECT_TRUE(std::filesystem::is_regular_file(elsewhere / path.filename())) << path;
    }
    EXPECT_EQ(ContentOf(elsewhere / "1_additional.talvor"), "a|b|c|d|e|g\r\n");
    EXPECT_EQ(ContentOf(elsewhere / "1_materials.talvor").size(), 5U * 1444U);
}

/// Seconds that the command takes; it must end with `status`.
double SecondsOf(const ChildStart& start, int status) {
    const auto from = std::chrono::steady_clock::now();
    ChildProgram program(start);
    EXPECT_EQ(program.Wait(), status) << program.Errors();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

constexpr double LongTime = 1.5; // seconds; a wait for a lock of Qt's takes 30

TEST_F(OtherLinksTest, APipeInTheSettingsPlaceHoldsNoSettingsAndStays) {
    std::filesystem::remove(Settings());
    ASSERT_EQ(::mkfifo(Settings().c_str(), 0600), 0);
    EXPECT_LT(SecondsOf(Folder.Start({"companies"}), 0), LongTime);
    EXPECT_LT(SecondsOf(Folder.Start({"report", "compliant"}), 1), LongTime); // no company is selected
    ExpectOneFailure({"select-company", "2"}, {"Cannot save the setting COMPANY/DEFAULT in \"" +
                                               PathText(Settings()) + "\": it is not a regular file."});
    EXPECT_TRUE(std::filesystem::is_fifo(Settings()));
}

TEST_F(OtherLinksTest, ADeviceOrAFolderInTheSettingsPlaceHoldsNoSettingsAndStays) {
    const std::string notSaved = "Cannot save the setting COMPANY/DEFAULT in \"" + PathText(Settings()) +
                                 "\": it is not a regular file.";
    for (const char* device : {"/dev/full", "/dev/zero"}) {
        std::filesystem::remove(Settings());
        std::filesystem::create_symlink(device, Settings());
        EXPECT_LT(SecondsOf(Folder.Start({"companies"}), 0), LongTime);
        ExpectOneFailure({"select-company", "2"}, {notSaved});
        EXPECT_EQ(std::filesystem::read_symlink(Settings()), device);
    }
    std::filesystem::remove(Settings());
    std::filesystem::create_directory(Settings());
    EXPECT_LT(SecondsOf(Folder.Start({"companies"}), 0), LongTime);
    ExpectOneFailure({"select-company", "2"}, {notSaved});
    EXPECT_TRUE(std::filesystem::is_directory(Settings()));
}

TEST_F(OtherLinksTest, ALockThatAKilledCopyLeftBesideTheSettingsHoldsNobodyUp) {
    // As Qt writes it: the number of the process, its name, its computer's name. This process is alive.
    const std::filesystem::path lock = PathText(Settings()) + ".lock";
    for (const std::string& content : {std::to_string(::getpid()) + "\nlinks_test\nhost\n", std::string()}) {
        WriteContent(lock, content);
        EXPECT_LT(SecondsOf(Folder.Start({"companies"}), 0), LongTime);
        EXPECT_LT(SecondsOf(Folder.Start({"select-company", "2"}), 0), LongTime);
        EXPECT_EQ(ContentOf(Settings()), "[COMPANY]\nDEFAULT=2\n");
        Folder.Run({"select-company", "1"});
        EXPECT_EQ(ContentOf(lock), content);
    }
}

} // namespace
} // namespace mact
