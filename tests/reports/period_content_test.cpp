#include "reports/period_content.h"

#include "materials/material_record.h"
#include "reports/report_period.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <array>

namespace mact {
namespace {

PeriodCounts CountsOf(std::initializer_list<std::string_view> periods) {
    PeriodCounts counts;
    for (const std::string_view period : periods)
        counts.Add(period);
    return counts;
}

std::string ContentAt(const PeriodCounts& counts, std::int16_t month, std::string_view year) {
    return PeriodContent(Result<PeriodCounts>(counts), month, year);
}

TEST(PeriodContentTest, CountsTheChosenMonthAndTheElevenBefore) {
    const PeriodCounts counts = CountsOf({"4/2004", "3/2004", "3/2005", "3/2005", "4/2005"});
    EXPECT_EQ(ContentAt(counts, 3, "2005"), "3 records");
    EXPECT_EQ(ContentAt(counts, 3, "2006"), "1 record");
}

TEST(PeriodContentTest, SaysWhichMonthIsTheNewestIfThereIsNone) {
    EXPECT_EQ(ContentAt(CountsOf({"9/2005", "12/2005", "11/2005"}), 5, "2000"),
              "No usage; the newest is DEC 2005");
}

TEST(PeriodContentTest, AMonthWithALeadingZeroIsInNoReport) {
    const PeriodCounts counts = CountsOf({"03/2005", "2/2005"});
    EXPECT_EQ(ContentAt(counts, 3, "2005"), "1 record");
    EXPECT_EQ(*counts.Newest(), std::chrono::year{2005} / 2);
}

TEST(PeriodContentTest, AnEmptyPeriodIsInEveryReport) {
    EXPECT_EQ(ContentAt(CountsOf({""}), 3, "2005"), "1 record");
}

TEST(PeriodContentTest, WithoutAMonthThatAReportCanHaveNoneIsNamed) {
    const PeriodCounts counts = CountsOf({"13/2005", "soon", "03/2005"});
    EXPECT_FALSE(counts.Newest());
    EXPECT_EQ(ContentAt(counts, 3, "2005"), "No usage");
}

TEST(PeriodContentTest, AsksForWhatIsMissing) {
    const Result<PeriodCounts> counts = CountsOf({"3/2005"});
    EXPECT_EQ(PeriodContent(counts, std::nullopt, "2005"), "Choose a month.");
    for (const char* year : {"", "2", "200", "1899", "0000"})
        EXPECT_EQ(PeriodContent(counts, std::int16_t{3}, year), "Type a year from 1900 to 9999.") << year;
}

TEST(PeriodContentTest, SaysThatThereIsNoUsageAtAll) {
    EXPECT_EQ(PeriodContent(Result<PeriodCounts>(PeriodCounts()), std::nullopt, ""),
              "No usage has been entered yet.");
}

TEST(PeriodContentTest, CountsMaterials) {
    EXPECT_EQ(MaterialsContent(std::size_t{15}), "15 materials");
    EXPECT_EQ(MaterialsContent(std::size_t{1}), "1 material");
    EXPECT_EQ(MaterialsContent(std::size_t{0}), "No materials have been entered yet.");
}

/// Stores records as a program of any age may have left them: their periods are not checked.
class StoredContentTest : public testing::Test {
protected:
    TestProgram Program;

    void Store(std::string period) {
        ASSERT_FALSE(SaveUsage(Program.App, {.MaterialId = 1, .Period = std::move(period), .Unit = UnitLbs}));
    }
};

TEST_F(StoredContentTest, DeletedUsageDoesNotCount) {
    Store("3/2005");
    Store("3/2005");
    ASSERT_FALSE(DeleteUsage(Program.App, 1));
    EXPECT_EQ(PeriodContent(ReadPeriodCounts(Program.App), std::int16_t{3}, "2005"), "1 record");
}

TEST_F(StoredContentTest, CountsWhatTheReportsRead) {
    for (const char* period : {"3/2005", "03/2005", " 2/2005", "", "4/2004", "3/2004", "2005", "3/2005/", "|",
                               "4/2004|", "12/2004", "2/2004", "1/19|2/"})
        Store(period);
    const Result<PeriodCounts> counts = ReadPeriodCounts(Program.App);
    ASSERT_TRUE(counts);
    std::size_t most = 0;
    for (int month = 1; month <= 12; ++month)
        for (const char* year : {"2003", "2004", "2005", "2006"}) {
            const std::string list = *BuildPeriodList(std::to_string(month) + '/' + year, 12);
            const std::size_t read = ReadUsage(Program.App, {.Periods = list})->size();
            EXPECT_EQ(counts->CountIn(list), read) << month << '/' << year;
            most = std::max(most, read);
        }
    EXPECT_EQ(most, 6U); // 3/2005, 2/2005, 12/2004, 4/2004, the empty period and, for its "|", 4/2004|
}

TEST_F(StoredContentTest, LookingCreatesNothing) {
    EXPECT_TRUE(ReadPeriodCounts(Program.App)->IsEmpty());
    EXPECT_EQ(*CountMaterials(Program.App), 0U);
    EXPECT_TRUE(std::filesystem::is_empty(Program.DataFile("")));
}

TEST_F(StoredContentTest, WhatCannotBeReadIsSaidWithoutAMessage) {
    std::filesystem::create_directory(Program.DataFile("1_usage.talvor"));
    std::filesystem::create_directory(Program.DataFile("1_materials.talvor"));
    EXPECT_EQ(PeriodContent(ReadPeriodCounts(Program.App), std::int16_t{3}, "2005"),
              "The usage cannot be read.");
    EXPECT_EQ(MaterialsContent(CountMaterials(Program.App)), "The materials cannot be read.");
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

TEST_F(StoredContentTest, DeletedMaterialsDoNotCount) {
    std::string slots;
    for (const bool isLive : {true, false, true})
        slots += Pack(MaterialLayout, {.MaterialId = 1, .CustomId = "GC-1", .Active = isLive});
    WriteContent(Program.DataFile("1_materials.talvor"), slots);
    EXPECT_EQ(*CountMaterials(Program.App), 2U);
}
} // namespace
} // namespace mact
