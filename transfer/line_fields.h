#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

/// The fields between the bars of a line; empty when there are not exactly `Count`. Counted before they are
/// split: a long line of bars costs no memory.
template <std::size_t Count>
std::optional<std::array<std::string_view, Count>> SplitFields(std::string_view line) {
    if (std::ranges::count(line, '|') != static_cast<std::ptrdiff_t>(Count - 1)) return std::nullopt;
    std::array<std::string_view, Count> fields;
    for (std::string_view& field : fields) {
        const std::size_t end = std::min(line.find('|'), line.size());
        field = line.substr(0, end);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}
