#pragma once

#include <cstdint>
#include <vector>

namespace mact {

/// A value for every signed 16-bit record number (a damaged file may hold negative ones), by index.
template <class Value> class ByNumber {
public:
    Value& operator[](std::int16_t number) { return m_values[static_cast<std::uint16_t>(number)]; }
    const Value& operator[](std::int16_t number) const {
        return m_values[static_cast<std::uint16_t>(number)];
    }

private:
    std::vector<Value> m_values = std::vector<Value>(std::size_t{1} << 16);
};
} // namespace mact
