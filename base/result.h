#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

/// What went wrong, in one sentence for the user: what was being done, to which file, the system's reason.
/// The text is UTF-8, since it may hold a path.
struct Failure {
    std::string Description;
};

/// A T or a Failure; the names of C++23's std::expected, and few of them.
template <class T> class [[nodiscard]] Result {
public:
    Result(T value) : m_content(std::move(value)) {}
    Result(Failure failure) : m_content(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_content); }
    T& operator*() {
        assert(*this);
        return *std::get_if<T>(&m_content);
    }
    const T& operator*() const {
        assert(*this);
        return *std::get_if<T>(&m_content);
    }
    T* operator->() { return &**this; }
    const T* operator->() const { return &**this; }
    const Failure& error() const {
        assert(!*this);
        return *std::get_if<Failure>(&m_content);
    }

private:
    std::variant<T, Failure> m_content;
};

/// The result of an operation that has no value.
using Done = Result<std::monostate>;
inline Done Success() {
    return std::monostate{};
}

/// Every save and delete answers true when it did not happen.
using Failed = bool;
