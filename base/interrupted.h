#pragma once

#include <system_error>

namespace mact {

/// Calls std::filesystem, which reports an interruption by a signal as an error, until it is not interrupted.
/// `call` takes the error_code that says so.
template <class Call> auto WhileInterrupted(std::error_code& error, const Call& call) {
    for (;;) {
        auto result = call(error);
        if (error != std::errc::interrupted) return result;
    }
}
} // namespace mact
