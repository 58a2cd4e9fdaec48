#pragma once

#include "materials/material_record.h"
#include "usage/usage_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace mact {

/// Data made up from a seed: the same seed gives the same data on every platform. There are few values to
/// choose from, so that records often have something in common.
class RandomData {
public:
    explicit RandomData(unsigned seed) : m_numbers(seed) {}

    /// From `least` to `most`, both included.
    int Int(int least, int most) {
        const auto count = static_cast<unsigned>(most - least) + 1;
        return least + static_cast<int>(m_numbers() % count);
    }
    std::int16_t Int16(int least, int most) { return static_cast<std::int16_t>(Int(least, most)); }
    bool OneIn(int count) { return Int(1, count) == 1; }
    template <class Value> Value Pick(const std::vector<Value>& values) {
        return values[static_cast<std::size_t>(Int(0, static_cast<int>(values.size()) - 1))];
    }
    /// Printable code-page characters; the text may begin and end with spaces.
    std::string Text(int longest) {
        std::string text(static_cast<std::size_t>(Int(0, longest)), ' ');
        for (char& character : text)
            if (!OneIn(4)) character = Pick<char>({'a', 'B', '0', '-', '\xE9', '\xC9', '\x80', '"', '/'});
        return text;
    }
    /// With up to six decimals and at most 15 digits, so that its text gives the number exactly.
    double Number(int least, int most) {
        const auto scale = Pick<std::int64_t>({1, 10, 100, 1000, 1000000});
        const auto count = static_cast<std::uint64_t>(most - least) * static_cast<std::uint64_t>(scale) + 1;
        const auto above = static_cast<std::int64_t>(m_numbers() % count);
        return static_cast<double>(least * scale + above) / static_cast<double>(scale);
    }

private:
    std::mt19937_64 m_numbers;
};

/// Calls `check` with the seed of each case until one fails, and names the seed of that one. Other cases are
/// tried with --gtest_random_seed.
template <class Check> void ForEachSeed(unsigned cases, const Check& check) {
    const auto first = static_cast<unsigned>(GTEST_FLAG_GET(random_seed)) * cases + 1;
    for (unsigned seed = first; seed < first + cases && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        check(seed);
    }
}

/// The bytes of a file with these records.
template <class Record, class... Types>
std::string FileOf(const RecordLayout<Record, Types...>& layout, const std::vector<Record>& records) {
    std::string content;
    for (const Record& record : records)
        content += Pack(layout, record);
    return content;
}

/// Names the first byte that differs instead of showing all of them.
inline testing::AssertionResult IsSameContent(const std::string& content, const std::string& expected,
                                              std::size_t slotLength) {
    if (content == expected) return testing::AssertionSuccess();
    const std::size_t at =
        static_cast<std::size_t>(std::ranges::mismatch(content, expected).in1 - content.begin());
    return testing::AssertionFailure()
           << content.size() / slotLength << " records instead of " << expected.size() / slotLength
           << ", different from byte " << at % slotLength << " of record " << at / slotLength + 1 << " on";
}
template <class Record, class... Types>
testing::AssertionResult AreSameRecords(const RecordLayout<Record, Types...>& layout,
                                        const std::vector<Record>& records,
                                        const std::vector<Record>& expected) {
    return IsSameContent(FileOf(layout, records), FileOf(layout, expected), layout.SlotLength());
}
} // namespace mact
