#include "reports/report_period.h"

#include "usage/usage_record.h"

#include <limits>

#include <gtest/gtest.h>

namespace mact {
namespace {

using std::chrono::year;
using std::chrono::year_month;

std::string PeriodList(std::string_view endText, std::int16_t months = 12) {
    const Result<std::string> list = BuildPeriodList(endText, months);
    return list ? *list : "failure: " + SentenceOf(list.error());
}

TEST(BuildPeriodListTest, ListsTwelveMonthsNewestFirst) {
    EXPECT_EQ(PeriodList("3/2008"),
              "3/2008|2/2008|1/2008|12/2007|11/2007|10/2007|9/2007|8/2007|7/2007|6/2007|"
              "5/2007|4/2007|");
}

TEST(BuildPeriodListTest, DecemberEndKeepsWithinTheYear) {
    EXPECT_EQ(PeriodList("12/2007"),
              "12/2007|11/2007|10/2007|9/2007|8/2007|7/2007|6/2007|5/2007|4/2007|3/2007|"
              "2/2007|1/2007|");
}

TEST(BuildPeriodListTest, JanuaryEndCrossesTheYear) {
    EXPECT_EQ(PeriodList("1/2008"),
              "1/2008|12/2007|11/2007|10/2007|9/2007|8/2007|7/2007|6/2007|5/2007|4/2007|"
              "3/2007|2/2007|");
}

TEST(BuildPeriodListTest, OneMonthIsTheEndAlone) {
    EXPECT_EQ(PeriodList("11/2008", 1), "11/2008|");
}

TEST(BuildPeriodListTest, PaddedMonthIsListedWithoutItsZero) {
    EXPECT_EQ(PeriodList("03/2008", 1), "3/2008|");
}

TEST(BuildPeriodListTest, EndWithoutMonthIsAFailureThatShowsIt) {
    EXPECT_EQ(PeriodList("/2005"),
              "failure: Cannot tell the months of the report: \"/2005\" is not a month and a "
              "four-digit year, as in 3/2005.");
}

TEST(ParsePeriodEndTest, ReadsMonthAndYear) {
    EXPECT_EQ(ParsePeriodEnd("11/2007"), year(2007) / 11);
    EXPECT_EQ(ParsePeriodEnd("1/1900"), year(1900) / 1);
    EXPECT_EQ(ParsePeriodEnd("12/9999"), year(9999) / 12);
}

TEST(ParsePeriodEndTest, BlanksAroundTheYearAreIgnored) {
    EXPECT_EQ(ParsePeriodEnd("3/ 2008 "), year(2008) / 3);
}

class NoPeriodEndTest : public testing::TestWithParam<std::string> {};
TEST_P(NoPeriodEndTest, IsNoMonth) {
    EXPECT_FALSE(ParsePeriodEnd(GetParam()));
}
INSTANTIATE_TEST_SUITE_P(Texts, NoPeriodEndTest,
                         testing::Values("", "/", "3/", "/2005", "3", "0/2005", "13/2005", "3/1899",
                                         "3/10000", "3/05", "3.5/2005", "-3/2005", "3/2005/1", "JAN/2005",
                                         "3/20O5", "003/2005", "1e0/2005"));

TEST(ShortMonthNameTest, HasThreeLettersAndTheYear) {
    EXPECT_EQ(ShortMonthName(std::chrono::year{2005} / 1), "JAN 2005");
    EXPECT_EQ(ShortMonthName(std::chrono::year{1999} / 12), "DEC 1999");
}

TEST(FormatMonthYearTest, PadsTheMonthWhenAsked) {
    EXPECT_EQ(FormatMonthYear(year(2008) / 3, true), "03/2008");
    EXPECT_EQ(FormatMonthYear(year(2008) / 3, false), "3/2008");
    EXPECT_EQ(FormatMonthYear(year(2008) / 12, true), "12/2008");
}

TEST(FormatMonthYearTest, IsEmptyWithoutAMonth) {
    EXPECT_EQ(FormatMonthYear(std::nullopt, true), "");
    EXPECT_EQ(FormatMonthYear(year_month{year(2008), std::chrono::month(13)}, true), "");
}

double Converted(double quantity, double density, std::int16_t unit, std::int16_t wantedUnit) {
    const Result<double> converted = ConvertQuantity(quantity, density, unit, wantedUnit);
    return converted ? *converted : std::numeric_limits<double>::quiet_NaN();
}

TEST(ConvertQuantityTest, QuantityInTheWantedUnitIsUnchanged) {
    EXPECT_EQ(Converted(12.5, 9.2, UnitLbs, UnitLbs), 12.5);
    EXPECT_EQ(Converted(12.5, 9.2, UnitMgal, UnitMgal), 12.5);
}

TEST(ConvertQuantityTest, ThousandGallonsBecomePoundsByTheDensity) {
    EXPECT_EQ(Converted(1.5, 8, UnitMgal, UnitLbs), 12000);
}

TEST(ConvertQuantityTest, PoundsBecomeThousandGallonsByTheDensity) {
    EXPECT_EQ(Converted(12000, 8, UnitLbs, UnitMgal), 1.5);
}

TEST(ConvertQuantityTest, UnitThatIsNotPoundsCountsAsThousandGallons) {
    EXPECT_EQ(Converted(1.5, 8, 0, UnitLbs), 12000);
}

TEST(ConvertQuantityTest, UnitThatIsNotThousandGallonsCountsAsPounds) {
    EXPECT_EQ(Converted(12000, 8, 7, UnitMgal), 1.5);
}

TEST(ConvertQuantityTest, DensityZeroInThousandGallonsIsAFailure) {
    const Result<double> converted = ConvertQuantity(12, 0, UnitLbs, UnitMgal);
    ASSERT_FALSE(converted);
    EXPECT_EQ(SentenceOf(converted.error()),
              "Cannot convert the quantity 12 with the density 0 lb/gal: the result "
              "is too large or not a number.");
}

TEST(ConvertQuantityTest, OverflowIsAFailure) {
    EXPECT_FALSE(ConvertQuantity(1e300, 1e10, UnitMgal, UnitLbs));
}

} // namespace
} // namespace mact
