#include "overview/overview_options_entry.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr const char* StartError = "- The start month needs a month and a year from 1900 to 9999.\r\n";
constexpr const char* HeadroomError =
    "- The headroom to warn of must be a number from 0 to 100, as in 7.5.\r\n";
constexpr const char* ContentError =
    "- The content to warn of must be a number from 0 to 100, as in 0.5.\r\n";
constexpr const char* AddressError = "- The address must be one line, without tabs.\r\n";

std::string ErrorsOf(const OverviewOptionsEntry& entry) {
    return CheckOverviewOptions(entry).Text();
}

/// Passes every check.
OverviewOptionsEntry Entry() {
    return {.StartMonth = 3,
            .StartYear = "2005",
            .WarnHeadroom = "5",
            .WarnContent = "0.5",
            .Address = "14 Slipway Road"};
}

TEST(OverviewOptionsEntryTest, AWholeEntryPasses) {
    EXPECT_EQ(ErrorsOf(Entry()), "");
}

TEST(OverviewOptionsEntryTest, EveryFailedCheckIsToldInTheOrderOfTheForm) {
    EXPECT_EQ(ErrorsOf({.StartMonth = 3, .Address = "a\nb"}),
              std::string(StartError) + HeadroomError + ContentError + AddressError);
}

std::string StartErrors(std::optional<std::int16_t> month, const char* year) {
    OverviewOptionsEntry entry = Entry();
    entry.StartMonth = month;
    entry.StartYear = year;
    return ErrorsOf(entry);
}

TEST(OverviewOptionsEntryTest, AStartIsGivenWhollyOrNotAtAll) {
    EXPECT_EQ(StartErrors({}, ""), "");
    EXPECT_EQ(StartErrors({}, "  "), "");
    EXPECT_EQ(StartErrors({}, "2005"), StartError);
    EXPECT_EQ(StartErrors(3, ""), StartError);
}

TEST(OverviewOptionsEntryTest, AStartIsFrom1900To9999) {
    EXPECT_EQ(StartErrors(1, "1900"), "");
    EXPECT_EQ(StartErrors(12, "9999"), "");
    EXPECT_EQ(StartErrors(12, " 2005 "), "");
    for (const char* year : {"1899", "10000", "200", "20o5", "-200", "2e03"})
        EXPECT_EQ(StartErrors(12, year), StartError) << year;
}

struct PercentCase {
    const char* Name;
    const char* Text;
    bool Passes;
};
constexpr PercentCase PercentCases[] = {
    {"Nothing",      "",         false},
    {"Zero",         "0",        true },
    {"Fraction",     "0.25",     true },
    {"Blanks",       "  7.5  ",  true },
    {"Most",         "100",      true },
    {"Exponent",     "1e1",      true },
    {"Negative",     "-0.1",     false},
    {"TooMuch",      "100.0001", false},
    {"TooLarge",     "1e999",    false},
    {"NotANumber",   "nan",      false},
    {"Infinite",     "inf",      false},
    {"DecimalComma", "0,5",      false},
    {"PercentSign",  "5 %",      false},
    {"Word",         "half",     false},
};
std::string CaseName(const testing::TestParamInfo<PercentCase>& info) {
    return info.param.Name;
}
class PercentTest : public testing::TestWithParam<PercentCase> {};

TEST_P(PercentTest, IsANumberFromZeroToAHundred) {
    OverviewOptionsEntry entry = Entry();
    entry.WarnHeadroom = GetParam().Text;
    EXPECT_EQ(ErrorsOf(entry), GetParam().Passes ? "" : HeadroomError);
    entry = Entry();
    entry.WarnContent = GetParam().Text;
    EXPECT_EQ(ErrorsOf(entry), GetParam().Passes ? "" : ContentError);
}
INSTANTIATE_TEST_SUITE_P(Limits, PercentTest, testing::ValuesIn(PercentCases), CaseName);

TEST(OverviewOptionsEntryTest, AnAddressIsOneLineInAnyLetters) {
    OverviewOptionsEntry entry = Entry();
    for (const char* address : {"", "14 Slipway Road, \xC5\x81\xC3\xB3\x64\xC5\xBA", "a=b; \"c\""}) {
        entry.Address = address;
        EXPECT_EQ(ErrorsOf(entry), "") << address;
    }
    for (const char* address :
         {"a\nb", "a\rb", "a\tb", "a\x01", "a\xC2\x85", "a\xE2\x80\xA8", "a\xE2\x80\xA9"}) {
        entry.Address = address;
        EXPECT_EQ(ErrorsOf(entry), AddressError) << address;
    }
}

TEST(OverviewOptionsEntryTest, ChoicesAreInWords) {
    EXPECT_EQ(ChoiceText({}), "Not chosen");
    EXPECT_EQ(ChoiceText(OperationOption::Average), "Emission average");
    EXPECT_EQ(ChoiceText(OperationOption::TableTwo), "Table 2 weighted content");
    EXPECT_EQ(ChoiceText(OperationOption::Filled), "Filled resin");
    EXPECT_EQ(ChoiceText(OperationOption::Closed), "Closed molding");
    EXPECT_EQ(ChoiceText(OperationOption::NotUsed), "Not used");
}

TEST(OverviewOptionsEntryTest, ShowsTheDefaults) {
    const OverviewOptionsEntry entry = EntryOf({});
    EXPECT_FALSE(entry.StartMonth);
    EXPECT_EQ(entry.StartYear, "");
    EXPECT_EQ(entry.WarnHeadroom, "5");
    EXPECT_EQ(entry.WarnContent, "0.5");
    EXPECT_EQ(entry.Address, "");
}

TEST(OverviewOptionsEntryTest, ShowsAStartInDecember) {
    const OverviewOptionsEntry entry = EntryOf({.Start = MonthNumberOf(2004, 12)});
    EXPECT_EQ(entry.StartMonth, 12);
    EXPECT_EQ(entry.StartYear, "2004");
}

TEST(OverviewOptionsEntryTest, BecomesTheOptions) {
    OverviewOptionsEntry entry = Entry();
    entry.WarnHeadroom = " 7.5 ";
    entry.WarnContent = "1e-1";
    entry.OptionOf = {OperationOption::Average, std::nullopt, OperationOption::TableTwo,
                      OperationOption::Closed, OperationOption::NotUsed};
    const OverviewOptions options = OptionsOf(entry, {});
    EXPECT_EQ(options.Start, MonthNumberOf(2005, 3));
    EXPECT_EQ(options.WarnHeadroom, 7.5);
    EXPECT_EQ(options.WarnContent, 0.1);
    EXPECT_EQ(options.OptionOf, entry.OptionOf);
    EXPECT_EQ(options.Address, "14 Slipway Road");
}

TEST(OverviewOptionsEntryTest, WithoutAStartTakesTheStartAway) {
    OverviewOptionsEntry entry = Entry();
    entry.StartMonth.reset();
    entry.StartYear = "";
    EXPECT_FALSE(OptionsOf(entry, {.Start = MonthNumberOf(2005, 3)}).Start);
}

TEST(OverviewOptionsEntryTest, KeepsTheLinesOfALaterVersion) {
    const OverviewOptions before{
        .OtherLines = {"color=blue", "# a note"}
    };
    EXPECT_EQ(OptionsOf(Entry(), before).OtherLines, before.OtherLines);
}

} // namespace
} // namespace mact
