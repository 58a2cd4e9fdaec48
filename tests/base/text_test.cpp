#include "base/text.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Pieces = std::vector<std::string_view>;

TEST(TrimTest, RemovesSpacesFromBothEndsAndNothingElse) {
    EXPECT_EQ(Trim("  GC-1 0 "), "GC-1 0");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim(" \tGC\xA0 "), "\tGC\xA0");
}

TEST(UpperCaseTest, IsTheCodePagesOwn) {
    EXPECT_EQ(UpperCase("az\xE0\xE9\xFE"), "AZ\xC0\xC9\xDE");
    EXPECT_EQ(UpperCase("\x9A\x9C\x9E\xFF"), "\x8A\x8C\x8E\x9F"); // š œ ž ÿ
    EXPECT_EQ(UpperCase("\xDF\xF7\xD7\xB5\x83"),
              "\xDF\xF7\xD7\xB5\x83"); // ß ÷ × µ ƒ have no capital in the code page
}

TEST(ComparisonTest, IgnoresCaseAndBlanksAround) {
    EXPECT_TRUE(EqualsIgnoringCase("R\xE9sine", "R\xC9SINE"));
    EXPECT_FALSE(EqualsIgnoringCase("resine", "r\xE9sine"));
    EXPECT_FALSE(EqualsIgnoringCase("a", "ab"));
    EXPECT_EQ(ComparisonKey(" gc-100 "), "GC-100");
    EXPECT_EQ(ComparisonKey("  "), "");
}

TEST(ComparisonTest, ANameIsTheSameInAnyCaseAndWithBlanksAround) {
    EXPECT_TRUE(IsSameName("gc-1 ", " GC-1"));
    EXPECT_FALSE(IsSameName("gc-1", "gc- 1"));
    EXPECT_TRUE(IsSameName("", "  "));
}

TEST(ComparisonTest, OrdersByTheUpperCasedBytes) {
    EXPECT_EQ(CompareIgnoringCase("r\xE9sine", "R\xC9SINE"), 0);
    EXPECT_EQ(CompareIgnoringCase("", ""), 0);
    EXPECT_LT(CompareIgnoringCase("a", "B"), 0);
    EXPECT_GT(CompareIgnoringCase("b", "A"), 0);
    EXPECT_LT(CompareIgnoringCase("resin", "Resin A"), 0);
    EXPECT_GT(CompareIgnoringCase("resin", ""), 0);
    EXPECT_LT(CompareIgnoringCase("z", "\xE9"), 0); // bytes compare as unsigned
}

TEST(SplitTest, GivesOnePieceMoreThanSeparators) {
    EXPECT_EQ(Split("a|b||", '|'), (Pieces{"a", "b", "", ""}));
    EXPECT_EQ(Split("", '|'), (Pieces{""}));
    EXPECT_EQ(Split("abc", '|'), (Pieces{"abc"}));
}

TEST(CodePageTest, EveryByteSurvivesTheWayToUtf8AndBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(CodePageFromUtf8(Utf8FromCodePage(all)), all);
}

TEST(CodePageTest, LettersOfBoatNamesAreTheirBytes) {
    EXPECT_EQ(CodePageFromUtf8("\u00E9\u00DF\u00D8\u20AC"), "\xE9\xDF\xD8\x80");
    EXPECT_EQ(Utf8FromCodePage("\xE9\xDF\xD8\x80"), "\u00E9\u00DF\u00D8\u20AC");
}

TEST(CodePageTest, ACharacterThatItLacksBecomesAQuestionMark) {
    EXPECT_EQ(CodePageFromUtf8("\u0141\u00F3d\u017A"), "?\xF3"
                                                       "d?");
    EXPECT_EQ(CodePageFromUtf8("\U0001F6A4"), "?");
}

TEST(CodePageTest, MalformedUtf8BecomesQuestionMarks) {
    EXPECT_EQ(CodePageFromUtf8("a\xFFz"), "a?z");
    EXPECT_EQ(CodePageFromUtf8("\xC3"), "?");
    EXPECT_EQ(CodePageFromUtf8("\xE2\x82"), "??");
    EXPECT_EQ(CodePageFromUtf8("\xC0\xAF"), "??");           // overlong
    EXPECT_EQ(CodePageFromUtf8("\xED\xA0\x80"), "???");      // half of a surrogate pair
    EXPECT_EQ(CodePageFromUtf8("\xF4\x90\x80\x80"), "????"); // beyond the last code point
}

TEST(PathTextTest, KeepsLettersThatTheCodePageLacks) {
    EXPECT_EQ(PathText(PathFromUtf8("\u0141\u00F3d\u017A")), "\u0141\u00F3d\u017A");
}

TEST(PrintableTest, ShowsAQuestionMarkForEachControlCharacter) {
    EXPECT_EQ(Printable("a\x1B[2Jb\r\n\t\x01\x7F"), "a?[2Jb?????");
    EXPECT_EQ(Printable(std::string_view("\0", 1)), "?");
    EXPECT_EQ(Printable(Utf8FromCodePage("\x81\x8D\x8F\x90\x9D")), "?????"); // U+0081 and so on
    EXPECT_EQ(Printable("\xC2\x9B"
                        "2J"),
              "?2J"); // begins a command in one character
}

TEST(PrintableTest, LeavesAllElseAsItIs) {
    const std::string text = "Caf\xC3\xA9 \xE2\x82\xAC <b> \xC2\xA0 \xFF\x9B"; // the last two are no UTF-8
    EXPECT_EQ(Printable(text), text);
}

} // namespace
} // namespace mact
