#include "transfer/text_numbers.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <functional>
#include <limits>

namespace mact {
namespace {

constexpr std::size_t FewestPlaces = 16;

std::size_t HashOf(std::string_view text) {
    return std::hash<std::string_view>{}(text);
}

/// Marks a taken place, and tells most texts with the same place apart without comparing them: the place
/// comes from the hash's low bits, the mark from its high ones.
std::uint8_t MarkOf(std::size_t hash) {
    constexpr int highestByte = std::numeric_limits<std::size_t>::digits - 8;
    return static_cast<std::uint8_t>(hash >> highestByte | 1U); // never Free
}

} // namespace

TextNumbers::TextNumbers(std::size_t expectedTexts)
    : m_marks(std::bit_ceil(std::max(2 * expectedTexts, FewestPlaces)), Free), m_numbers(m_marks.size()) {
    m_starts.reserve(expectedTexts + 1);
}

std::uint32_t TextNumbers::Add(std::string_view text) {
    const std::size_t hash = HashOf(text);
    std::size_t place = PlaceOf(text, hash);
    if (m_marks[place] != Free) return m_numbers[place];
    if (2 * (Count() + 1) > m_marks.size()) {
        Grow();
        place = PlaceOf(text, hash); // all texts have moved
    }
    const auto number = static_cast<std::uint32_t>(Count());
    m_marks[place] = MarkOf(hash);
    m_numbers[place] = number;
    m_texts += text;
    assert(m_texts.size() <= std::numeric_limits<std::uint32_t>::max());
    m_starts.push_back(static_cast<std::uint32_t>(m_texts.size()));
    return number;
}

std::optional<std::uint32_t> TextNumbers::Find(std::string_view text) const {
    const std::size_t place = PlaceOf(text, HashOf(text));
    return m_marks[place] == Free ? std::nullopt : std::optional(m_numbers[place]);
}

std::size_t TextNumbers::PlaceOf(std::string_view text, std::size_t hash) const {
    const std::size_t last = m_marks.size() - 1;
    const std::uint8_t mark = MarkOf(hash);
    // Comes to an end, because at least half of the places are free.
    for (std::size_t place = hash & last;; place = (place + 1) & last) {
        const std::uint8_t found = m_marks[place];
        if (found == Free || (found == mark && TextOf(m_numbers[place]) == text)) return place;
    }
}

std::string_view TextNumbers::TextOf(std::uint32_t number) const {
    return std::string_view(m_texts).substr(m_starts[number], m_starts[number + 1] - m_starts[number]);
}

void TextNumbers::Grow() {
    const std::size_t places = 2 * m_marks.size();
    m_marks.assign(places, Free);
    m_numbers.resize(places); // the old ones are not read: their marks are gone
    for (std::uint32_t number = 0; number < Count(); ++number) {
        const std::size_t hash = HashOf(TextOf(number));
        const std::size_t place = PlaceOf(TextOf(number), hash);
        m_marks[place] = MarkOf(hash);
        m_numbers[place] = number;
    }
}
} // namespace mact
