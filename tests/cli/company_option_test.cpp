#include "tests/cli/cli_shop.h"

namespace mact {
namespace {

class CompanyOption : public CliShop {
protected:
    CompanyOption() {
        AddCompany("Acme", "Dock 1");
        AddCompany("B\u00E5ter \u00D8st", "Dock 2");
        AddCompany("3", "Dock 3");
        AddCompany("7", "Dock 4");
    }
    /// Which company a file of names is made for.
    std::string CompanyOf(const std::string& option) {
        const ProgramRun run = Run({"--company", option, "names", "a", "b", "c", "d", "e", "f"});
        if (run.Status != 0) return run.Errors;
        std::string made;
        for (const char* number : {"1", "2", "3", "4", "5"})
            if (std::filesystem::remove(Data / (std::string(number) + "_additional.talvor"))) made += number;
        return made;
    }
};

TEST_F(CompanyOption, TakesANameWithoutRegardToCaseAndBlanksAround) {
    EXPECT_EQ(CompanyOf("Acme"), "1");
    EXPECT_EQ(CompanyOf("  aCME "), "1");
    EXPECT_EQ(CompanyOf("b\u00C5ter \u00F8ST"), "2"); // letters of the code page
}

TEST_F(CompanyOption, TakesANumberForAnIdEvenIfACompanyHasThatName) {
    EXPECT_EQ(CompanyOf("2"), "2");
    EXPECT_EQ(CompanyOf(" 2 "), "2");
    EXPECT_EQ(CompanyOf("3"), "3");
    EXPECT_EQ(CompanyOf("7"), "There is no company 7.\n"); // the one named 7 is company 4
    EXPECT_EQ(CompanyOf("40000"), "There is no company 40000.\n");
    EXPECT_EQ(CompanyOf("-1"), "There is no company -1.\n");
}

TEST_F(CompanyOption, RefusesANameThatNoneHasAndSaysWhichThereAre) {
    const std::string all = " There are: 1 Acme (Dock 1); 2 B\u00E5ter \u00D8st (Dock 2); 3 3 (Dock 3); "
                            "4 7 (Dock 4).\n";
    EXPECT_EQ(CompanyOf("Acme Boats"), "There is no company \"Acme Boats\"." + all); // not a part of a name
    EXPECT_EQ(CompanyOf("Acm"), "There is no company \"Acm\"." + all);
    EXPECT_EQ(CompanyOf(""), "There is no company \"\"." + all);
    EXPECT_EQ(CompanyOf("\u0141\u00F3d\u017A"), "There is no company \"\u0141\u00F3d\u017A\"." + all);
    EXPECT_EQ(Run({"--company", "Acm", "names"}).Status, 1);
}

TEST_F(CompanyOption, DoesNotTakeALetterThatTheCodePageLacksForAQuestionMark) {
    AddCompany("?", "Dock 5");
    EXPECT_TRUE(CompanyOf("\u0141").starts_with("There is no company \"\u0141\"."));
    EXPECT_EQ(CompanyOf("?"), "5");
}

TEST_F(CompanyOption, RefusesANameThatSeveralHave) {
    AddCompany("ACME", "Dock 5");
    const ProgramRun run = Run({"--company", "acme", "names"});
    EXPECT_EQ(run.Errors, "There are 2 companies \"acme\": 1 Acme (Dock 1); 5 ACME (Dock 5). Name one by its "
                          "number.\n");
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
}

TEST_F(CompanyOption, CutsALongList) {
    for (int number = 5; number <= 12; ++number)
        AddCompany("C", "D");
    EXPECT_TRUE(CompanyOf("x").ends_with("10 C (D); and 2 more, which companies lists.\n"));
}

TEST_F(CompanyOption, MayStandBeforeOrAfterTheCommandAndSoMayTheFolder) {
    const auto run = [&](const std::vector<std::string>& arguments) {
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config);
    };
    const std::string folder = PathText(Folder);
    const ProgramRun before = run({"--folder", folder, "--company", "Acme", "status", "--json"});
    EXPECT_TRUE(before.Output.starts_with("[\n  {\"id\": 1, \"name\": \"Acme\"")) << before.Errors;
    EXPECT_EQ(run({"status", "--json", "--folder", folder, "--company", "Acme"}).Output, before.Output);
    EXPECT_EQ(run({"status", "--company=acme", "--json", "--folder=" + folder}).Output, before.Output);
    EXPECT_EQ(run({"--company", "1", "status", "--folder", folder, "--json"}).Output, before.Output);
    EXPECT_EQ(run({"names", "a", "b", "--company", "2", "c", "d", "--folder", folder, "e", "f"}).Status, 0);
    EXPECT_EQ(ContentOf(Data / "2_additional.talvor"), "a|b|c|d|e|f\r\n");
    EXPECT_EQ(run({"companies", "--version"}).Output, "MACT (V1.1)\n");
}

TEST_F(CompanyOption, CannotBeGivenTwiceAndIsRefusedBehindACommandForAllCompanies) {
    EXPECT_EQ(Run({"--company", "1", "names", "--company", "2"}).Status, 2);
    EXPECT_EQ(Run({"check", "--company", "1"}).Status, 2);
    EXPECT_EQ(Run({"restore", "--company", "Acme"}).Status, 2);
    EXPECT_EQ(Run({"companies", "status"}).Status, 2); // one command only
    EXPECT_EQ(Run({"names", "--json"}).Status, 2);     // an option of other commands
}

// A word that is a command is a name where a name is due.
TEST_F(CompanyOption, LeavesArgumentsThatAreNamedLikeACommandAlone) {
    EXPECT_EQ(Run({"add-company", "check", "status"}).Output, "5\n");
    EXPECT_EQ(CompanyOf("check"), "5");
    EXPECT_EQ(Run({"--company", "1", "names", "check", "companies", "-", "-", "-", "-"}).Status, 0);
    EXPECT_EQ(ContentOf(Data / "1_additional.talvor"), "check|companies|-|-|-|-\r\n");
}

} // namespace
} // namespace mact
