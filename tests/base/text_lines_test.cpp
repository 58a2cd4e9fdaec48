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

struct Measured {
    std::string Text;
    std::uint64_t Length;
    bool IsTooLong;
    bool operator==(const Measured&) const = default;
};

/// The lines of a reader that keeps lines of up to `limits.Longest` bytes.
std::vector<Measured> MeasuredLinesOf(const std::string& content, LineLimits limits) {
    const TemporaryFolder folder;
    WriteContent(folder.Path() / "lines.txt", content);
    OsFiles files;
    const auto file = files.Open(folder.Path() / "lines.txt", OpenMode::Read);
    TextLines lines(**file, limits);
    std::vector<Measured> all;
    for (;;) {
        const auto line = lines.Next();
        if (!line || !*line) break;
        all.push_back({std::string(**line), lines.Length(), lines.IsTooLong()});
    }
    EXPECT_EQ(lines.BytesRead(), content.size());
    return all;
}

TEST(TextLinesTest, OfALineThatIsTooLongTheBeginningIsKeptAndTheLengthIsCounted) {
    EXPECT_EQ(MeasuredLinesOf("abcde\nabcdef\r\nabc\r",
                              {
                                  .Longest = 5, .KeptOfLonger = 2
    }),
              (std::vector<Measured>{{"abcde", 5, false}, {"ab", 6, true}, {"abc", 3, false}}));
}
TEST(TextLinesTest, ALastLineThatIsTooLongNeedNotBeEnded) {
    EXPECT_EQ(MeasuredLinesOf("a\nabcdef",
                              {
                                  .Longest = 5, .KeptOfLonger = 5
    }),
              (std::vector<Measured>{{"a", 1, false}, {"abcde", 6, true}}));
}
TEST(TextLinesTest, AsMuchAsTheLimitIsALineAndOneByteMoreIsNot) {
    // These lines are longer than the pieces in which a file is read (256 KiB), and end around one's end.
    constexpr std::size_t twoPieces = std::size_t{2} << 18;
    for (const std::string end : {"\n", "\r", "\r\n"})
        for (std::size_t longest = twoPieces - 4; longest <= twoPieces + 2; ++longest) {
            SCOPED_TRACE(longest);
            const std::string line(longest, 'x');
            const std::string longer(longest + 1, 'x');
            const LineLimits limits{.Longest = longest, .KeptOfLonger = 3};
            EXPECT_TRUE(MeasuredLinesOf(line + end + "b", limits) ==
                        (std::vector<Measured>{
                            {line, longest, false},
                            {"b",  1,       false}
            }));
            EXPECT_TRUE(MeasuredLinesOf(longer + end + "b", limits) ==
                        (std::vector<Measured>{
                            {"xxx", longest + 1, true },
                            {"b",   1,           false}
            }));
            EXPECT_TRUE(MeasuredLinesOf(longer + end, limits) == (std::vector<Measured>{
                                                                     {"xxx", longest + 1, true}
            }));
        }
}
TEST(TextLinesTest, ALineOf16MegabytesIsKeptAndOneByteMoreIsNot) {
    const std::string line(16777216, 'x');
    EXPECT_TRUE(LinesOf(line + "\nb") == (Lines{line, "b"}));
    EXPECT_TRUE(LinesOf(line + "y\nb") == (Lines{std::string(100, 'x'), "b"}));
}

} // namespace
} // namespace mact
