#include "overview/company_status.h"

#include "overview/answers.h"
#include "tests/overview/made_records.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// 1000 lb of a resin in each month of 2005.
class StatusShop : public OverviewShop {
public:
    explicit StatusShop(const std::string& hapContent) {
        ImportMaterials(
            {"R-1|resin|Production resin|Non-Spray|9|" + hapContent + "|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> usage;
        for (int month = 1; month <= 12; ++month)
            usage.push_back("R-1|" + std::to_string(month) + "|2005|1000|lbs");
        ImportUsage(usage);
    }
    CompanyStatus Status() {
        const Result<CompanyStatus> status = ReadCompanyStatus(App, "Acme Boats");
        EXPECT_TRUE(status);
        return status ? *status : CompanyStatus();
    }
};

TEST(CompanyStatusTest, OfAShopWithinItsLimitsNamesTheSmallestHeadroom) {
    StatusShop shop("34");
    // The row: 1 of 35, 2.857 %. The average: 0.014 * 34^2.275 = 42.68 of 46, 7.21 %.
    EXPECT_EQ(StatusLine(shop.Status()), "1|Acme Boats|12/2005|within|not used|within|2.86|0|0");
    EXPECT_EQ(StandingOf(shop.Status()), Standing::Within);
}

TEST(CompanyStatusTest, OfAShopThatIsOverIsTrouble) {
    StatusShop shop("36");
    // 0.014 * 36^2.275 = 48.6093: over 46 by 5.67 %, and the row by 2.86 %.
    EXPECT_EQ(StatusLine(shop.Status()), "1|Acme Boats|12/2005|over|not used|over|-5.67|0|0");
    EXPECT_EQ(StandingOf(shop.Status()), Standing::Trouble);
}

TEST(CompanyStatusTest, CountsMonthsWithoutEntryAndFindings) {
    StatusShop shop("0.34"); // a fraction typed as percent: one finding
    shop.ImportUsage({"R-1|3|2006|1000|lbs"});
    EXPECT_EQ(StatusLine(shop.Status()), "1|Acme Boats|3/2006|within|not used|within|99.03|2|1");
}

TEST(CompanyStatusTest, WithoutDataAndBeforeTwelveMonthsNothingIsKnown) {
    OverviewShop empty;
    const Result<CompanyStatus> status = ReadCompanyStatus(empty.App, "Acme|\n");
    ASSERT_TRUE(status);
    EXPECT_EQ(StatusLine(*status), "1|Acme|?||not used|not used|not used||0|0");
    EXPECT_EQ(StandingOf(*status), Standing::Unknown);
    empty.ImportMaterials({"R-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    empty.ImportUsage({"R-1|3|2006|1000|lbs"});
    const Result<CompanyStatus> early = ReadCompanyStatus(empty.App, "Acme");
    ASSERT_TRUE(early);
    EXPECT_EQ(StatusLine(*early), "1|Acme|3/2006|too early (1 of 12)|not used|too early (1 of 12)|2.86|0|0");
    EXPECT_EQ(StandingOf(*early), Standing::Unknown);
}

TEST(CompanyStatusTest, CountsWhatIsWrongWithRecordsOfNoMonth) {
    OverviewShop shop;
    shop.ImportMaterials({"R-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
    shop.ImportUsage({"R-1|03|2005|1000|lbs", "R-1|04|2005|1000|lbs"}); // in no report
    const Result<CompanyStatus> status = ReadCompanyStatus(shop.App, "Acme");
    ASSERT_TRUE(status);
    EXPECT_EQ(StatusLine(*status), "1|Acme||not used|not used|not used||0|2");
    EXPECT_EQ(StandingOf(*status), Standing::Unknown);
}

TEST(CompanyStatusTest, TheWorstComesFirst) {
    const auto made = [](std::int16_t number, State average, std::optional<double> headroom) {
        return CompanyStatus{.CompanyId = number, .Average = average, .SmallestHeadroom = headroom};
    };
    std::vector<CompanyStatus> companies = {
        made(1, State::Within, 5),    made(2, State::TooEarly, -3),          made(3, State::Over, -1),
        made(4, State::Differs, 0.5), made(5, State::NotUsed, std::nullopt), made(6, State::Within, 2),
    };
    SortWorstFirst(companies);
    std::vector<int> order;
    order.reserve(companies.size());
    for (const CompanyStatus& status : companies)
        order.push_back(status.CompanyId);
    EXPECT_EQ(order, (std::vector{3, 4, 2, 5, 6, 1}));
}

TEST(CompanyStatusTest, JsonHoldsTheSameAndEscapesNames) {
    EXPECT_EQ(StatusJson({}), "[]\n");
    EXPECT_EQ(StatusJson({
                  {.CompanyId = 2, .Name = "A \"B\" \\ \n\xE9"}
    }),
              "[\n  {\"id\": 2, \"name\": \"A \\\"B\\\" \\\\ \\u000a\xC3\xA9\", \"month\": null, \"rows\": "
              "\"not used\", "
              "\"filled\": \"not used\", \"average\": \"not used\", \"headroom_percent\": null, "
              "\"months_without_entry\": 0, \"findings\": 0}\n]\n");
}

class AnswersTest : public testing::Test {
protected:
    ShopRecords Shop{.Types = SomeTypes()};
    MonthFigures AtDecember() const { return ShopFigures(Shop).At(MonthNumberOf(2005, 12)); }
    std::vector<Answer> Answers() const { return AnswersOf(ShopFigures(Shop), AtDecember()); }
};

TEST_F(AnswersTest, SayInWordsWhereTheShopStands) {
    Shop.Materials = {MadeMaterial(1, 34), MadeMaterial(2, 36)};
    UseAllYear(Shop, 1, 22046);
    UseAllYear(Shop, 2, 22046 * 2);
    const std::vector<Answer> answers = Answers();
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_EQ(answers[0].Is, State::Over);
    EXPECT_EQ(answers[0].Text, "Not every material in use is within: production resin, nonatomized.");
    EXPECT_EQ(answers[1].Is, State::Over); // 35.33 %
    EXPECT_EQ(answers[1].Text, "production resin, nonatomized: Over.");
    // 120 Mg at 42.68 and 240 Mg at 48.61 kg/Mg are 16,788 kg, of 360 Mg times 46 = 16,560 kg.
    EXPECT_EQ(answers[2].Is, State::Over);
    EXPECT_EQ(answers[2].Text, "Over. 101.4 % of the allowance, 228.00 kg too much.");
    EXPECT_EQ(VerdictLine(AtDecember(), 2),
              "DEC 2005: emission average 101.4 % of the allowance; 2 points need attention");
    Shop.Materials[1].HapContent = 34;
    EXPECT_EQ(Answers()[0].Text, "No material in use is above its limit.");
    EXPECT_EQ(Answers()[1].Text, "Within.");
    EXPECT_EQ(Answers()[2].Text, "Within. 92.8 % of the allowance, 1,195.20 kg left.");
    EXPECT_EQ(VerdictLine(AtDecember(), 1),
              "DEC 2005: emission average 92.8 % of the allowance; 1 point needs attention");
}

TEST_F(AnswersTest, TheVerdictLineOfWhatIsOverNeverSaysThatNothingNeedsAttention) {
    Shop.Materials = {MadeMaterial(1, 36)}; // 48.61 of 46 kg/Mg: row and average are over
    UseAllYear(Shop, 1, 22046);
    EXPECT_EQ(VerdictLine(AtDecember(), 0),
              "DEC 2005: emission average 105.7 % of the allowance; 2 figures are over or differ");
    Shop.Materials[0].HapContent = 35.1; // 45.89 kg/Mg: the row alone is over
    EXPECT_EQ(VerdictLine(AtDecember(), 0),
              "DEC 2005: emission average 99.8 % of the allowance; 1 figure is over or differs");
}

TEST_F(AnswersTest, SayWhenItIsTooEarlyOrNothingWasUsed) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "7/2005", 1000);
    EXPECT_EQ(Answers()[1].Text, "Too early (6 of 12 months).");
    EXPECT_EQ(VerdictLine(AtDecember(), 0),
              "DEC 2005: too early to tell, 6 of 12 months; nothing needs attention");
    Shop.Usage = {};
    Use(Shop, 1, "1/2005", 0);
    EXPECT_EQ(Answers()[0].Is, State::NotUsed);
    EXPECT_EQ(VerdictLine(AtDecember(), 0),
              "DEC 2005: nothing was used that is averaged; nothing needs attention");
}

} // namespace
} // namespace mact
