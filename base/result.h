#pragma once

#include "base/failure.h"

#include <cassert>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

namespace mact {

/// A T or a Failure, with the few members of C++23's std::expected that are needed.
template <class T> class [[nodiscard]] Result {
public:
    Result(T value) : m_value(std::move(value)) {}
    Result(Failure failure) : m_failure(std::make_shared<const Failure>(std::move(failure))) {}

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
        assert(m_failure);
        return *m_failure;
    }
    /// Passes the value to `make`, which may itself fail; without a value, returns the failure.
    template <class Make> auto and_then(const Make& make) const -> decltype(make(std::declval<const T&>())) {
        if (!m_value) return error();
        return make(*m_value);
    }
    /// The same for a `make` that cannot fail.
    template <class Make>
    auto transform(const Make& make) const -> Result<decltype(make(std::declval<const T&>()))> {
        if (!m_value) return error();
        return make(*m_value);
    }

private:
    std::optional<T> m_value;
    std::shared_ptr<const Failure> m_failure; // not in place: results are many, failures few
};

/// The result of an operation that yields no value.
using Done = Result<std::monostate>;
inline Done Success() {
    return std::monostate{};
}

/// What saves and deletes return: true if nothing was saved or deleted.
using Failed = bool;
} // namespace mact
