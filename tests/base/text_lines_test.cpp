#include "base/text_lines.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

std::vector<std::string> LinesOf(const std::string& content) {
    const TemporaryFolder folder;
    WriteContent(folder.Path() / "lines.txt", content);
    OsFiles files;
    const auto file = files.Open(folder.Path() / "lines.txt", OpenMode::Read);
    TextLines lines(**file);
    std::vector<std::string> all;
    for (;;) {
        const auto line = lines.Next();
        if (!line || !*line) break;
        all.emplace_back(**line);
    }
    EXPECT_EQ(lines.BytesRead(), content.size());
    return all;
}

using Lines = std::vector<std::string>;

TEST(TextLinesTest, EachKindOfLineEndEndsALine) {
    EXPECT_EQ(LinesOf("a\r\nb\nc\rd\r\n"), (Lines{"a", "b", "c", "d"}));
}
TEST(TextLinesTest, ALineOfAnyLengthEndsAtTheFirstOfBothEnds) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::string line(length, 'x');
        EXPECT_EQ(LinesOf(line + "\na\r"), (Lines{line, "a"})) << length;
        EXPECT_EQ(LinesOf(line + "\ra\n"), (Lines{line, "a"})) << length;
        EXPECT_EQ(LinesOf(line + "\r\na"), (Lines{line, "a"})) << length;
    }
}
TEST(TextLinesTest, ALastLineWithoutAnEndCounts) {
    EXPECT_EQ(LinesOf("a\r\nb"), (Lines{"a", "b"}));
}
TEST(TextLinesTest, EmptyLinesCount) {
    EXPECT_EQ(LinesOf("\r\n\n\r\r\n"), (Lines{"", "", "", ""}));
}
TEST(TextLinesTest, AnEmptyFileHasNoLine) {
    EXPECT_EQ(LinesOf(""), Lines{});
}
TEST(TextLinesTest, ACarriageReturnAtTheVeryEndEndsTheLastLine) {
    EXPECT_EQ(LinesOf("a\r"), Lines{"a"});
}
TEST(TextLinesTest, ZeroBytesAreText) {
    EXPECT_EQ(LinesOf(std::string("a\0b\n", 4)), (Lines{std::string("a\0b", 3)}));
}

TEST(TextLinesTest, LineEndsSplitBetweenTwoReadsAreOne) {
    // The file is read in pieces of 256 KiB; these line ends lie around the end of the first piece.
    constexpr std::size_t piece = std::size_t{1} << 18;
    for (std::size_t length = piece - 3; length <= piece + 1; ++length) {
        const std::string line(length, 'x');
        EXPECT_EQ(LinesOf(line + "\r\nb\r\n"), (Lines{line, "b"})) << length;
        EXPECT_EQ(LinesOf(line + "\r"), (Lines{line})) << length;
        EXPECT_EQ(LinesOf(line), (Lines{line})) << length;
    }
}

TEST(TextLinesTest, ALineOfTenMegabytesIsOneLine) {
    std::string line;
    line.resize(10'000'000, 'x');
    EXPECT_EQ(LinesOf("a\n" + line + "\nb"), (Lines{"a", line, "b"}));
}

} // namespace
} // namespace mact
