#include "base/json.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(JsonTextTest, EscapesQuotesBackslashesAndAllControlCharacters) {
    EXPECT_EQ(JsonText("A \"B\" \\ C"), R"("A \"B\" \\ C")");
    EXPECT_EQ(JsonText(std::string_view("\0\x1B[2J\r\n\t\x1F", 9)),
              R"("\u0000\u001b[2J\u000d\u000a\u0009\u001f")");
    EXPECT_EQ(JsonText("\x7F\xC2\x80\xC2\x9B\xC2\x9F"), R"("\u007f\u0080\u009b\u009f")");
}

TEST(JsonTextTest, LeavesLettersAsTheyAre) {
    EXPECT_EQ(JsonText(""), R"("")");
    EXPECT_EQ(JsonText("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x9A\xA4 \xC2\xA0"),
              "\"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x9A\xA4 \xC2\xA0\"");
}

TEST(JsonTextTest, HasAReplacementForEachMalformedByte) {
    EXPECT_EQ(JsonText("a\x9B\xFF\xC3"), "\"a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xEF\xBF\xBD"), "\"\xEF\xBF\xBD\""); // the replacement itself
}

TEST(JsonTextOrNullTest, IsNullForAnEmptyText) {
    EXPECT_EQ(JsonTextOrNull(""), "null");
    EXPECT_EQ(JsonTextOrNull(" "), "\" \"");
}

TEST(JsonLinesTest, HasEachObjectOnALine) {
    EXPECT_EQ(JsonLines({}), "[]\n");
    EXPECT_EQ(JsonLines({"{}", "1"}), "[\n  {},\n  1\n]\n");
}

} // namespace
} // namespace mact
