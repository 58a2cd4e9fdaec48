#include "materials/units.h"
#include "tests/usage/sheet_shop.h"
#include "usage/pasted_usage.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// The lines as "1:a|b", with the cells between bars.
std::vector<std::string> Lines(std::string_view text) {
    std::vector<std::string> lines;
    for (const PastedLine& line : SplitPastedText(text)) {
        std::string& shown = lines.emplace_back(std::to_string(line.Number));
        char separator = ':';
        for (const std::string& cell : line.Cells) {
            shown += separator + cell;
            separator = '|';
        }
    }
    return lines;
}
using Texts = std::vector<std::string>;

TEST(SplitPastedTextTest, EachLineEndEndsALineAndTheLastNeedsNone) {
    for (const char* text : {"a\tb\r\nc\r\n", "a\tb\nc\n", "a\tb\rc\r", "a\tb\r\nc", "a\tb\rc"})
        EXPECT_EQ(Lines(text), (Texts{"1:a|b", "2:c"})) << text;
    EXPECT_EQ(Lines(""), Texts{});
}

TEST(SplitPastedTextTest, BlankLinesAreCounted) {
    EXPECT_EQ(Lines("a\n\n \t \r\n\r\nb\n\n"), (Texts{"1:a", "2", "3", "4", "5:b", "6"}));
}

TEST(SplitPastedTextTest, SurroundingBlanksAndBlankCellsAtTheEndAreLeftOut) {
    EXPECT_EQ(Lines("  a b \t\xA0"
                    "7\xA0\t \t\n\tc"),
              (Texts{"1:a b|7", "2:|c"}));
}

TEST(SplitPastedTextTest, AQuotedCellMayHoldTabsLineEndsAndQuotes) {
    EXPECT_EQ(Lines("\"a\tb\"\tc\n\"d\r\ne\"\tf\n\"5\"\" tape\"\t \"g\" \n\"\"\th"),
              (Texts{"1:a\tb|c", "2:d\r\ne|f", "3:5\" tape|g", "4:|h"}));
}

TEST(SplitPastedTextTest, QuotesThatEncloseNoWholeCellArePartOfIt) {
    EXPECT_EQ(Lines("5\" tape\t1\n\"red\" gel\t2\n\"open\t3\nx"),
              (Texts{"1:5\" tape|1", "2:\"red\" gel|2", "3:\"open|3", "4:x"}));
}

TEST(SplitPastedTextTest, ManyQuotesThatAreNeverClosedTakeNoLongerForIt) {
    std::string text;
    for (int line = 0; line < 100'000; ++line)
        text += "\"\"\"a\t\"b\n";
    EXPECT_EQ(SplitPastedText(text).size(), 100'000U);
}

TEST(PastedQuantityTest, IsANumberOfTheEditorOrOneWithSeparatedThousands) {
    const std::pair<const char*, const char*> numbers[] = {
        {"12.5",           "12.5"      },
        {" -3 ",           "-3"        },
        {"1e3",            "1e3"       },
        {"1,250",          "1250"      },
        {"1,250.75",       "1250.75"   },
        {"-12,345,678.",   "-12345678."},
        {"\xA0"
         "7\xA0", "7"         },
        {"0",              "0"         }
    };
    for (const auto& [cell, number] : numbers)
        EXPECT_EQ(PastedQuantity(cell), number) << cell;
    for (const char* cell : {"", "12,5", "0,125", "1,2345", "1234,567", ",123", "1,,234", "1.5,234",
                             "1,234.5,678", "1 250", "twelve", "#REF!", "5 lbs", "(5)", "1,25x"})
        EXPECT_FALSE(PastedQuantity(cell)) << cell;
}

TEST(PastedUnitTest, IsLbsOrMgalInAnyCase) {
    for (const char* cell : {"lbs", "LB", " Lbs "})
        EXPECT_EQ(PastedUnit(cell), UnitLbs) << cell;
    for (const char* cell : {"Mgal", "MGAL", "mg", "MGS"})
        EXPECT_EQ(PastedUnit(cell), UnitMgal) << cell;
    for (const char* cell : {"", "kg", "gal", "lbs."})
        EXPECT_EQ(PastedUnit(cell), 0) << cell;
}

/// A sheet with the rows A, B and C, each in pounds; a material D has no row, and E is deleted.
class PasteTest : public SheetShop {
protected:
    PasteTest() {
        for (const char* customId : {"A", "B", "C"})
            Use(Add(customId), "2/2005", 1);
        Add("D");
        Add("E", 10, false);
    }
    /// Each unmatched line as "2 text: reason".
    Texts Pasted(MonthSheet& sheet, std::string_view text, std::size_t firstRow = 0) {
        m_outcome = Paste(sheet, text, firstRow);
        Texts unmatched;
        for (const UnmatchedLine& line : m_outcome.Unmatched)
            unmatched.push_back(std::to_string(line.Number) + ' ' + line.Text + ": " + line.Reason);
        return unmatched;
    }
    using Places = std::vector<std::size_t>;
    PasteOutcome m_outcome;
};

TEST_F(PasteTest, OneColumnIsQuantitiesInTheOrderOfTheRows) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "5\r\n1,250\r\n7.5\r\n"), Texts{});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 lbs", "B 1250 lbs", "C 7.5 lbs"}));
    EXPECT_EQ(m_outcome.Rows, (Places{0, 1, 2}));
}

TEST_F(PasteTest, OneColumnBeginsAtTheGivenRow) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "5\n6\n7\n\n", 1), Texts{"3 7: There is no row left for it."});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A lbs", "B 5 lbs", "C 6 lbs"}));
}

TEST_F(PasteTest, ABlankLineOfOneColumnLeavesItsRowAlone) {
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(1, "3");
    EXPECT_EQ(Pasted(sheet, "5\n\n7\n"), Texts{});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 lbs", "B 3 lbs", "C 7 lbs"}));
    EXPECT_EQ(m_outcome.Rows, (Places{0, 2}));
}

TEST_F(PasteTest, AQuantityThatIsNoNumberIsNamedAndLeavesItsRowAlone) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "5\nnone\n7\n"), Texts{"2 none: The quantity is not a number."});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 lbs", "B lbs", "C 7 lbs"}));
}

TEST_F(PasteTest, AHeadingAboveQuantitiesTakesNoRow) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "Quantity\n5\n6\n"),
              Texts{"1 Quantity: It was taken for a heading; the quantities begin with the next line."});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 lbs", "B 6 lbs", "C lbs"}));
}

TEST_F(PasteTest, TwoColumnsAreMaterialIdAndQuantity) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "c\t5\n d \t6\n\nA\t7"), Texts{});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 7 lbs", "B lbs", "C 5 lbs", "D 6"})); // D has no unit yet
    EXPECT_EQ(m_outcome.Rows, (Places{2, 3, 0}));
}

TEST_F(PasteTest, ThreeColumnsHaveTheUnitToo) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "A\t5\tMGAL\nB\t6\nD\t7\tlb\n"), Texts{});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 Mgal", "B 6 lbs", "C lbs", "D 7 lbs"}));
}

TEST_F(PasteTest, WhatIsNotUnderstoodIsNamedWithItsReasonAndTheRestIsEntered) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(
        Pasted(sheet, "Material ID\tQuantity\tUnit\r\n"
                      "A\t5\tlbs\r\n"
                      "E\t6\tlbs\r\n"
                      "B\tsix\tlbs\r\n"
                      "\t7\r\n"
                      "B\t8\tkg\r\n"
                      "a\t9\r\n"
                      "B\t1\tlbs\tgood\r\n"
                      "\"X\r\nY\"\t2\r\n"
                      "C\t10\r\n"),
        (Texts{"1 Material ID\tQuantity\tUnit: There is no material with this Material ID.",
               "3 E\t6\tlbs: There is no material with this Material ID.",
               "4 B\tsix\tlbs: The quantity is not a number.", "5 \t7: It has no Material ID.",
               "6 B\t8\tkg: The unit is neither Mgal nor lbs.", "7 a\t9: The material is in line 2 already.",
               "8 B\t1\tlbs\tgood: It has more than three columns.",
               "9 X  Y\t2: There is no material with this Material ID."}));
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 5 lbs", "B lbs", "C 10 lbs"}));
}

TEST_F(PasteTest, AMaterialWithoutAQuantityGetsNoRow) {
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "3");
    EXPECT_EQ(Pasted(sheet, "A\t \tlbs\nD\nB\t0\nF\n"),
              Texts{"4 F: There is no material with this Material ID."});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A 3 lbs", "B 0 lbs", "C lbs"}));
}

TEST_F(PasteTest, MaterialIdsWithoutAnyQuantityAreNotTakenForQuantities) {
    MonthSheet sheet = Sheet();
    EXPECT_EQ(Pasted(sheet, "101\t\nA\t\n"), Texts{"1 101: There is no material with this Material ID."});
    EXPECT_EQ(RowsOf(sheet), (Texts{"A lbs", "B lbs", "C lbs"}));
}

TEST_F(PasteTest, NothingPastedEntersNothing) {
    MonthSheet sheet = Sheet();
    for (const char* text : {"", "\r\n", " \t \n\n"})
        EXPECT_EQ(Pasted(sheet, text), Texts{});
    EXPECT_TRUE(m_outcome.Rows.empty());
    EXPECT_FALSE(sheet.IsAnyEntered());
}

} // namespace
} // namespace mact
