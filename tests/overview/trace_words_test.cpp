#include "overview/trace_words.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

std::string ChoiceText(const FigureLine& line) {
    return FigureName(line, MonthEnd) + ": " + FigureOutcome(line, 3);
}

const FigureLine Content{
    .Figure = "content",
    .Item = "Gr\xFCn\n, Brush", // code-page text
    .Report = "33.29",
    .Exact = "33.290001",
    .Limit = "33",
    .Unit = "%",
    .Judged = {.Is = State::Differs, .Why = Cause::Rounding}
};

TEST(TraceWords, JudgedFigureIsNamedWithItsState) {
    EXPECT_EQ(ChoiceText(Content), "Content of Gr\xC3\xBCn?, Brush: Differs (rounding)");
    EXPECT_EQ(ChoiceText({.Figure = "filled", .Item = "FR", .Judged = {.Is = State::Over}}),
              "Filled resin FR: Over");
    EXPECT_EQ(ChoiceText({.Figure = "emissions", .Judged = {.Is = State::TooEarly}}),
              "Emissions: Too early (3 of 12 months)");
}

TEST(TraceWords, FigureWithoutStateIsNamedWithTheReportsValueOrTheExactOne) {
    EXPECT_EQ(ChoiceText({.Figure = "headroom", .Report = "-7.5", .Exact = "-7.512", .Unit = "kg"}),
              "Headroom: -7.5 kg");
    EXPECT_EQ(ChoiceText({.Figure = "amount", .Item = "closed molding", .Exact = "12.5", .Unit = "kg"}),
              "Amount of closed molding in December 2005 alone: 12.5 kg");
    EXPECT_EQ(ChoiceText({.Figure = "allowance", .Unit = "kg"}), "Allowance: none");
}

TEST(TraceWords, StatementHasValueLimitAndState) {
    EXPECT_EQ(FigureStatement(Content, MonthEnd, 12),
              "Twelve months ending December 2005: report 33.29 %, exact 33.290001 %. Limit 33 %. Differs "
              "(rounding).");
}

TEST(TraceWords, StatementOfADamagedFigureSaysThatThereIsNoAnswer) {
    EXPECT_EQ(FigureStatement({.Figure = "emissions", .Unit = "kg"}, MonthEnd, 12),
              "Twelve months ending December 2005: none. No answer: a number is too large or not a number.");
}

TEST(TraceWords, StatementOfAnAmountIsOfItsMonth) {
    EXPECT_EQ(FigureStatement({.Figure = "amount", .Exact = "12.5", .Unit = "kg"}, MonthEnd, 12),
              "The month December 2005: exact 12.5 kg.");
}

TEST(TraceWords, StatementOfTheMonthsNamesThoseWithoutEntry) {
    FigureLine months{.Figure = "months", .Report = "3", .Limit = "12"};
    EXPECT_EQ(FigureStatement(months, MonthEnd, 3),
              "Twelve months ending December 2005: 3 of 12 months count.");
    months.Item = "10/2005 11/2005";
    EXPECT_EQ(FigureStatement(months, MonthEnd, 3),
              "Twelve months ending December 2005: 3 of 12 months count. Without entry: 10/2005 11/2005.");
}

} // namespace
} // namespace mact
