#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace mact {

/// The fields between the bars of a line; empty when there are not exactly `Count`.
template <std::size_t Count>
std::optional<std::array<std::string_view, Count>> SplitFields(std::string_view line) {
    std::array<std::string_view, Count> fields;
    for (std::string_view& field : std::span(fields).first(Count - 1)) {
        const std::size_t end = line.find('|');
        if (end == std::string_view::npos) return std::nullopt;
        field = line.substr(0, end);
        line.remove_prefix(end + 1);
    }
    if (line.find('|') != std::string_view::npos) return std::nullopt;
    fields.back() = line;
    return fields;
}

} // namespace mact
