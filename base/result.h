#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace mact {

/// What went wrong, in one sentence for the user: what was being done, to which file, the system's reason.
/// The text is UTF-8, since it may hold a path.
struct Failure {
    std::string Description;
};

/// A T or a Failure; the names of C++23's std::expected, and few of them.
template <class T> class [[nodiscard]] Result {
public:
    Result(T value) : m_value(std::move(value)) {}
    Result(Failure failure) : m_failure(std::move(failure)) {}

    explicit operator bool() const { return m_value.has_value(); }
    T& operator*() {
        assert(m_value);
        return *m_value;
    }
    const T& operator*() const {
        assert(m_value);
        return *m_value;
    }
    T* operator->() { return &**this; }
    const T* operator->() const { return &**this; }
    const Failure& error() const {
        assert(!m_value);
        return m_failure;
    }

private:
    // Not a variant of the two: g++ 12 sees an invalid deallocation in its destructor, and warns.
    std::optional<T> m_value;
    Failure m_failure;
};

/// The result of an operation that has no value.
using Done = Result<std::monostate>;
inline Done Success() {
    return std::monostate{};
}

/// Every save and delete answers true when it did not happen.
using Failed = bool;

} // namespace mact
