#include "base/by_number.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(ByNumberTest, EveryNumberHasAValueOfItsOwn) {
    ByNumber<int> values;
    for (int number = -32768; number <= 32767; ++number)
        values[static_cast<std::int16_t>(number)] = number;
    for (int number = -32768; number <= 32767; ++number)
        ASSERT_EQ(values[static_cast<std::int16_t>(number)], number);
}
TEST(ByNumberTest, AValueIsEmptyAtFirst) {
    EXPECT_EQ(ByNumber<int>()[-1], 0);
    EXPECT_EQ(ByNumber<const char*>()[32767], nullptr);
}

} // namespace
} // namespace mact
