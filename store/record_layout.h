#pragma once

#include "base/text.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace mact {

/// How a record is laid out in its slot: fields in declaration order, without gaps, little-endian.
/// Files of earlier versions of the program depend on every layout.

/// The member's type decides how a field is stored (Store and Load below).
template <class Record, class Type> struct Field {
    Type Record::*Member;
    std::size_t Length; ///< bytes
};

/// A signed 16-bit integer.
template <class Record> constexpr Field<Record, std::int16_t> Int16(std::int16_t Record::*member) {
    return {member, 2};
}
/// `length` bytes of code-page text, padded with spaces; a longer value is cut. Reading drops the spaces at
/// the end but keeps those in front, so trim a text before using it.
template <class Record>
constexpr Field<Record, std::string> Text(std::string Record::*member, std::size_t length) {
    return {member, length};
}
/// An IEEE 754 binary64 number.
template <class Record> constexpr Field<Record, double> Double(double Record::*member) {
    return {member, 8};
}
/// A 16-bit integer, -1 for true and 0 for false; any other value reads as false.
template <class Record> constexpr Field<Record, bool> Flag(bool Record::*member) {
    return {member, 2};
}

template <class Record, class... Types> class RecordLayout {
public:
    constexpr RecordLayout(std::size_t slotLength, const std::tuple<Field<Record, Types>...>& fields)
        : m_slotLength(slotLength), m_fields(fields) {}

    constexpr std::size_t SlotLength() const { return m_slotLength; } ///< bytes
    constexpr std::size_t PackedLength() const { ///< bytes of the slot that the fields fill
        std::size_t length = 0;
        ForEachField([&](const auto& field, std::size_t) { length += field.Length; });
        return length;
    }
    /// Calls `visit` with each field and its offset in the slot.
    template <class Visitor> constexpr void ForEachField(const Visitor& visit) const {
        std::size_t offset = 0;
        const auto step = [&](const auto& field) {
            visit(field, offset);
            offset += field.Length;
        };
        std::apply([&](const auto&... field) { (step(field), ...); }, m_fields);
    }

private:
    std::size_t m_slotLength;
    std::tuple<Field<Record, Types>...> m_fields;
};

template <class Integer> void StoreLittleEndian(std::span<char> bytes, Integer value) {
    for (std::size_t index = 0; index < sizeof(Integer); ++index)
        bytes[index] = static_cast<char>((value >> (8 * index)) & 0xFFU);
}
inline void Store(std::span<char> bytes, std::int16_t value) {
    StoreLittleEndian(bytes, static_cast<std::uint16_t>(value));
}
inline void Store(std::span<char> bytes, const std::string& text) {
    std::ranges::fill(bytes, ' ');
    std::copy_n(text.data(), std::min(text.size(), bytes.size()), bytes.data());
}
inline void Store(std::span<char> bytes, double value) {
    StoreLittleEndian(bytes, std::bit_cast<std::uint64_t>(value));
}
inline void Store(std::span<char> bytes, bool value) {
    Store(bytes, static_cast<std::int16_t>(value ? -1 : 0));
}

template <class Integer> Integer LoadLittleEndian(std::string_view bytes) {
    Integer value = 0;
    for (std::size_t index = 0; index < sizeof(Integer); ++index) {
        const auto byte = static_cast<Integer>(static_cast<unsigned char>(bytes[index]));
        value = static_cast<Integer>(value | static_cast<Integer>(byte << (8 * index)));
    }
    return value;
}
inline void Load(std::string_view bytes, std::int16_t& value) {
    value = static_cast<std::int16_t>(LoadLittleEndian<std::uint16_t>(bytes));
}
inline void Load(std::string_view bytes, std::string& text) {
    text.assign(TrimEnd(bytes));
}
inline void Load(std::string_view bytes, double& value) {
    value = std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(bytes));
}
inline void Load(std::string_view bytes, bool& value) {
    std::int16_t stored = 0;
    Load(bytes, stored);
    value = stored == -1;
}

/// Pointers to members of different types cannot be compared with ==.
template <class Left, class Right> constexpr bool IsSameMember(Left left, Right right) {
    if constexpr (std::is_same_v<Left, Right>)
        return left == right;
    else
        return false;
}

/// Appends the record's whole slot to `packed`, with zero bytes after the last field.
template <class Record, class... Types>
void AppendPacked(const RecordLayout<Record, Types...>& layout, const std::type_identity_t<Record>& record,
                  std::string& packed) {
    const std::size_t start = packed.size();
    packed.resize(start + layout.SlotLength());
    const std::span slot = std::span(packed).subspan(start);
    layout.ForEachField([&](const auto& field, std::size_t offset) {
        Store(slot.subspan(offset, field.Length), record.*field.Member);
    });
}

/// The record's whole slot.
template <class Record, class... Types>
std::string Pack(const RecordLayout<Record, Types...>& layout, const std::type_identity_t<Record>& record) {
    std::string slot;
    AppendPacked(layout, record, slot);
    return slot;
}

/// Reads a whole slot into `record`, reusing the memory of its texts.
template <class Record, class... Types>
void Unpack(const RecordLayout<Record, Types...>& layout, std::string_view slot, Record& record) {
    layout.ForEachField([&](const auto& field, std::size_t offset) {
        Load(std::string_view(slot.data() + offset, field.Length), record.*field.Member);
    });
}

/// Reads only the named members, as in UnpackOnly<&UsageRecord::Period>(UsageLayout, slot, usage).
template <auto... Members, class Record, class... Types>
void UnpackOnly(const RecordLayout<Record, Types...>& layout, std::string_view slot, Record& record) {
    layout.ForEachField([&](const auto& field, std::size_t offset) {
        if ((IsSameMember(field.Member, Members) || ...))
            Load(std::string_view(slot.data() + offset, field.Length), record.*field.Member);
    });
}

/// A record's flag as stored: the record itself says only whether it is -1. Empty if the layout has no flag.
template <class Record, class... Types>
std::optional<std::int16_t> StoredFlag(const RecordLayout<Record, Types...>& layout, std::string_view slot) {
    std::optional<std::int16_t> flag;
    layout.ForEachField([&](const auto& field, std::size_t offset) {
        if constexpr (std::is_same_v<std::decay_t<decltype(field)>, Field<Record, bool>>)
            Load(slot.substr(offset, field.Length), flag.emplace());
    });
    return flag;
}
} // namespace mact
