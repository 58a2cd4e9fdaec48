#include "base/text_numbers.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <functional>
#include <utility>

namespace {

constexpr std::size_t FewestPlaces = 16;

std::uint32_t HashOf(std::string_view text) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
}

} // namespace

TextNumbers::TextNumbers(std::size_t expectedTexts)
    : m_places(std::bit_ceil(std::max(2 * expectedTexts, FewestPlaces))) {
    m_starts.reserve(expectedTexts + 1);
}

std::uint32_t TextNumbers::Add(std::string_view text) {
    const std::uint32_t hash = HashOf(text);
    std::size_t place = PlaceOf(text, hash);
    if (m_places[place].Number != Free) return m_places[place].Number;
    if (2 * (Count() + 1) > m_places.size()) {
        Grow();
        place = PlaceOf(text, hash);
    }
    const auto number = static_cast<std::uint32_t>(Count());
    m_places[place] = {hash, number};
    m_texts += text;
    assert(m_texts.size() < Free);
    m_starts.push_back(static_cast<std::uint32_t>(m_texts.size()));
    return number;
}

std::optional<std::uint32_t> TextNumbers::Find(std::string_view text) const {
    const Place& place = m_places[PlaceOf(text, HashOf(text))];
    return place.Number == Free ? std::nullopt : std::optional(place.Number);
}

std::size_t TextNumbers::PlaceOf(std::string_view text, std::uint32_t hash) const {
    const std::size_t last = m_places.size() - 1;
    for (std::size_t index = hash & last;; index = (index + 1) & last) {
        const Place& place = m_places[index];
        if (place.Number == Free || (place.Hash == hash && TextOf(place.Number) == text)) return index;
    }
}

std::string_view TextNumbers::TextOf(std::uint32_t number) const {
    return std::string_view(m_texts).substr(m_starts[number], m_starts[number + 1] - m_starts[number]);
}

void TextNumbers::Grow() {
    const std::vector<Place> before = std::exchange(m_places, std::vector<Place>(2 * m_places.size()));
    const std::size_t last = m_places.size() - 1;
    for (const Place& taken : before) {
        if (taken.Number == Free) continue;
        std::size_t index = taken.Hash & last;
        while (m_places[index].Number != Free)
            index = (index + 1) & last;
        m_places[index] = taken;
    }
}
