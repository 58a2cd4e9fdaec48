#include "transfer/text_numbers.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace mact {
namespace {

TEST(TextNumbersTest, CountsDifferentTextsFromZero) {
    TextNumbers texts;
    EXPECT_EQ(texts.Add("GEL"), 0U);
    EXPECT_EQ(texts.Add("RESIN"), 1U);
    EXPECT_EQ(texts.Add("GEL"), 0U);
    EXPECT_EQ(texts.Add("WAX"), 2U);
    EXPECT_EQ(texts.Count(), 3U);
}

TEST(TextNumbersTest, FindsWhatWasAddedAndNothingElse) {
    TextNumbers texts;
    EXPECT_FALSE(texts.Contains(""));
    texts.Add("AB");
    texts.Add("C");
    EXPECT_EQ(texts.Find("C"), 1U);
    EXPECT_FALSE(texts.Contains("A"));
    EXPECT_FALSE(texts.Contains("ABC"));
    EXPECT_FALSE(texts.Contains("B"));
    EXPECT_FALSE(texts.Contains(""));
}

TEST(TextNumbersTest, KeepsTheEmptyTextAndZeroBytes) {
    using namespace std::string_view_literals;
    TextNumbers texts;
    EXPECT_EQ(texts.Add(""), 0U);
    EXPECT_EQ(texts.Add("A\0"sv), 1U);
    EXPECT_EQ(texts.Find(""), 0U);
    EXPECT_EQ(texts.Find("A\0"sv), 1U);
    EXPECT_FALSE(texts.Contains("A"));
}

TEST(TextNumbersTest, TakesATextOfItsOwn) {
    TextNumbers texts;
    std::string text = "RESIN";
    texts.Add(text);
    text = "OTHER";
    EXPECT_EQ(texts.Find("RESIN"), 0U);
    EXPECT_FALSE(texts.Contains("OTHER"));
}

TEST(TextNumbersTest, AgreesWithAMapBeyondTheRoomItWasGiven) {
    for (const std::size_t room : {0U, 1U, 100U, 40000U}) {
        SCOPED_TRACE(room);
        TextNumbers texts(room);
        std::map<std::string, std::uint32_t> expected;
        std::mt19937 random(7);
        for (int step = 0; step < 100000; ++step) {
            const std::string text = std::to_string(random() % 50000);
            EXPECT_EQ(texts.Contains(text), expected.contains(text)) << text;
            const auto next = static_cast<std::uint32_t>(expected.size());
            EXPECT_EQ(texts.Add(text), expected.try_emplace(text, next).first->second) << text;
        }
        EXPECT_EQ(texts.Count(), expected.size());
    }
}

} // namespace
} // namespace mact
