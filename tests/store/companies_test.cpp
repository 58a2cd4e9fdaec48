#include "store/companies.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class CompaniesTest : public testing::Test, public TestProgram {
protected:
    std::vector<std::string> NamesFound(const CompanyFilter& filter) {
        std::vector<CompanyRecord> results;
        const bool isFound = FindCompanies(App, filter, results);
        EXPECT_EQ(isFound, !results.empty());
        std::vector<std::string> names;
        names.reserve(results.size());
        for (const CompanyRecord& company : results)
            names.push_back(company.CompanyName);
        return names;
    }
};
using Names = std::vector<std::string>;

TEST_F(CompaniesTest, TheFirstCompanyGetsIdentifier1AndPrefixesItsFiles) {
    EXPECT_EQ(SaveCompany(App, "Acme", "Dock 1"), 0);
    EXPECT_EQ(ContentOf(DataFile("companies.talvor")),
              Hex("01 00") + Padded("Acme", 250) + Padded("Dock 1", 250) + Hex("FF FF"));
}

TEST_F(CompaniesTest, SavingWithAnIdentifierOverwritesThatRecordOnly) {
    SaveCompany(App, "Acme", "Dock 1");
    SaveCompany(App, "Beta", "Dock 2");
    SaveCompany(App, "Acme Boats", "Dock 9", std::int16_t{1});
    EXPECT_EQ(ContentOf(DataFile("companies.talvor")),
              Hex("01 00") + Padded("Acme Boats", 250) + Padded("Dock 9", 250) + Hex("FF FF") + //
                  Hex("02 00") + Padded("Beta", 250) + Padded("Dock 2", 250) + Hex("FF FF"));
}

TEST_F(CompaniesTest, TheNameFilterIsSearchedForTheRecordsName) {
    SaveCompany(App, "Acme", "Dock 1");
    SaveCompany(App, "Beta", "Dock 2");
    EXPECT_EQ(NamesFound({.CompanyName = "ACME BOATS"}), Names{"Acme"});
    EXPECT_EQ(NamesFound({.CompanyName = "Acm"}), Names{});
    EXPECT_EQ(NamesFound({.CompanyLocation = "at dock 2, east"}), Names{"Beta"});
}

TEST_F(CompaniesTest, ARecordWithAnEmptyNameMatchesEveryNameFilter) {
    SaveCompany(App, "", "Dock 1");
    EXPECT_EQ(NamesFound({.CompanyName = "anything"}), Names{""});
}

TEST_F(CompaniesTest, TheIdentifierFilterIsExact) {
    SaveCompany(App, "Acme", "Dock 1");
    SaveCompany(App, "Beta", "Dock 2");
    EXPECT_EQ(NamesFound({.CompanyId = std::int16_t{2}}), Names{"Beta"});
    EXPECT_EQ(NamesFound({.CompanyId = std::int16_t{3}}), Names{});
}

TEST_F(CompaniesTest, OnlyRecordsWhoseFlagIsMinusOneAreFoundAndListed) {
    WriteContent(DataFile("companies.talvor"),
                 Hex("01 00") + Padded("Gone", 250) + Padded("Dock 1", 250) + Hex("00 00") + //
                     Hex("02 00") + Padded("Odd", 250) + Padded("Dock 2", 250) + Hex("01 00") + Hex("03 00") +
                     Padded("Here", 250) + Padded("Dock 3", 250) + Hex("FF FF"));
    EXPECT_EQ(NamesFound({}), Names{"Here"});
}

TEST_F(CompaniesTest, TheListShowsTrimmedNameAndLocation) {
    ListLines list = {
        {"old", 9}
    };
    FillCompanyList(list, {
                              {.CompanyId = 4, .CompanyName = " Acme ", .CompanyLocation = " Dock 1 "},
                              {.CompanyId = 5, .CompanyName = "Gone",   .Active = false              }
    });
    EXPECT_EQ(list, (ListLines{
                        {"Acme (Dock 1)", 4}
    }));
}

TEST_F(CompaniesTest, AFolderInTheFilesPlaceIsShownOnceAndCountsAsEmpty) {
    std::filesystem::create_directory(DataFile("companies.talvor"));
    EXPECT_EQ(NamesFound({}), Names{});
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    SaveCompany(App, "Acme", "Dock 1");
    EXPECT_EQ(Prompts.Shown.size(), 2U);
}

TEST_F(CompaniesTest, SelectingRemembersTheCompanyAcrossStarts) {
    SaveCompany(App, "Acme", "Dock 1");
    SaveCompany(App, "Beta", "Dock 2");
    std::vector<CompanyRecord> found;
    ASSERT_TRUE(FindCompanies(App, {.CompanyId = std::int16_t{2}}, found));
    EXPECT_TRUE(SelectCompany(App, found[0]));
    EXPECT_EQ(App.CurrentCompanyId, 2);
    EXPECT_EQ((Settings.Values[{"COMPANY", "DEFAULT"}]), "2");

    App.CurrentCompanyId = 0;
    App.CurrentCompanyName.clear();
    EXPECT_TRUE(RestoreCompany(App));
    EXPECT_EQ(App.CurrentCompanyId, 2);
    EXPECT_EQ(App.CurrentCompanyName, "Beta");
    EXPECT_EQ(App.CurrentCompanyLocation, "Dock 2");
}

TEST_F(CompaniesTest, ASaveThatFailsReturns0AfterItsMessage) {
    std::filesystem::create_directory(DataFile("companies.talvor"));
    EXPECT_EQ(SaveCompany(App, "Acme", "Dock 1"), 0);
    EXPECT_EQ(Prompts.Shown.size(), 1U);
}

TEST_F(CompaniesTest, ASelectionThatCannotBeRememberedIsAFailureAndHoldsForNow) {
    Settings.FailsWith = Failure{.Reason = "Cannot write the settings"};
    EXPECT_TRUE(ShowFailure(App, SelectCompany(App, {.CompanyId = 3, .CompanyName = "Acme"})));
    EXPECT_EQ(App.CurrentCompanyId, 3);
    EXPECT_EQ(ShownTexts(), Names{"Cannot write the settings."});
}

TEST_F(CompaniesTest, ARememberedCompanyThatCannotBeReadIsAFailure) {
    Settings.FailsToReadWith = Failure{.Doing = "read the settings"};
    const Done restored = RestoreCompany(App);
    ASSERT_FALSE(restored);
    EXPECT_EQ(restored.error().Doing, "read the settings");
}

} // namespace
} // namespace mact
