#include "base/interrupted.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(WhileInterruptedTest, CallsAgainUntilNoSignalInterrupts) {
    int calls = 0;
    std::error_code error;
    const int result = WhileInterrupted(error, [&](std::error_code& given) {
        ++calls;
        given = calls < 3 ? make_error_code(std::errc::interrupted) : std::error_code();
        return calls;
    });
    EXPECT_EQ(result, 3);
    EXPECT_FALSE(error);
}

TEST(WhileInterruptedTest, AnotherErrorIsReportedAtOnce) {
    int calls = 0;
    std::error_code error;
    WhileInterrupted(error, [&](std::error_code& given) {
        given = make_error_code(std::errc::io_error);
        return ++calls;
    });
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(error, std::errc::io_error);
}

} // namespace
} // namespace mact
