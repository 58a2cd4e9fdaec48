#pragma once

#include "base/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace mact {

/// How a record is laid out in its slot: packed fields in declaration order, without gaps, in little-endian.
/// Files of earlier versions of the program depend on every layout.

enum class FieldKind { Int16, Text, Double, Flag };

template <class Record> struct Field {
    FieldKind Kind;
    std::size_t Length; ///< bytes
    std::int16_t Record::*Int16Member = nullptr;
    std::string Record::*TextMember = nullptr;
    double Record::*DoubleMember = nullptr;
    bool Record::*FlagMember = nullptr;

    constexpr bool Holds(std::int16_t Record::*member) const { return Int16Member == member; }
    constexpr bool Holds(std::string Record::*member) const { return TextMember == member; }
    constexpr bool Holds(double Record::*member) const { return DoubleMember == member; }
    constexpr bool Holds(bool Record::*member) const { return FlagMember == member; }
};

/// A signed 16-bit integer.
template <class Record> constexpr Field<Record> Int16(std::int16_t Record::*member) {
    return {.Kind = FieldKind::Int16, .Length = 2, .Int16Member = member};
}
/// `length` bytes of code-page text, filled to the right with spaces; a longer value is cut. The spaces at
/// its end do not survive; those in front do, so a reader trims the text before using it.
template <class Record> constexpr Field<Record> Text(std::string Record::*member, std::size_t length) {
    return {.Kind = FieldKind::Text, .Length = length, .TextMember = member};
}
/// An IEEE 754 binary64 number.
template <class Record> constexpr Field<Record> Double(double Record::*member) {
    return {.Kind = FieldKind::Double, .Length = 8, .DoubleMember = member};
}
/// A 16-bit integer, -1 for true and 0 for false; any other value is not true.
template <class Record> constexpr Field<Record> Flag(bool Record::*member) {
    return {.Kind = FieldKind::Flag, .Length = 2, .FlagMember = member};
}

template <class Record> class RecordLayout {
public:
    using RecordType = Record;
    template <std::size_t Count>
    constexpr RecordLayout(std::size_t slotLength, const std::array<Field<Record>, Count>& fields)
        : m_slotLength(slotLength), m_fields(fields) {}

    constexpr std::size_t SlotLength() const { return m_slotLength; } ///< bytes
    constexpr std::span<const Field<Record>> Fields() const { return m_fields; }
    constexpr std::size_t PackedLength() const { ///< bytes of the slot that the fields take
        return OffsetOf(m_fields.size());
    }
    /// Where a field begins in the slot.
    constexpr std::size_t OffsetOf(std::size_t fieldIndex) const {
        std::size_t offset = 0;
        for (const auto& field : m_fields.first(fieldIndex))
            offset += field.Length;
        return offset;
    }
    template <class Member> constexpr std::size_t IndexOf(Member Record::*member) const {
        std::size_t index = 0;
        while (!m_fields[index].Holds(member))
            ++index;
        return index;
    }

private:
    std::size_t m_slotLength;
    std::span<const Field<Record>> m_fields;
};
template <const auto& Layout> using LayoutRecord = typename std::decay_t<decltype(Layout)>::RecordType;
template <class Record, std::size_t Count>
RecordLayout(std::size_t, const std::array<Field<Record>, Count>&) -> RecordLayout<Record>;

template <class Integer> void StoreLittleEndian(char* bytes, Integer value) {
    for (std::size_t index = 0; index < sizeof(Integer); ++index)
        bytes[index] = static_cast<char>((value >> (8 * index)) & 0xFFU);
}

template <class Integer> Integer LoadLittleEndian(const char* bytes) {
    Integer value = 0;
    for (std::size_t index = 0; index < sizeof(Integer); ++index) {
        const auto byte = static_cast<Integer>(static_cast<unsigned char>(bytes[index]));
        value = static_cast<Integer>(value | static_cast<Integer>(byte << (8 * index)));
    }
    return value;
}

/// Adds the whole slot to `packed`, with zero bytes after the last field.
template <class Record>
void AppendPacked(const RecordLayout<Record>& layout, const Record& record, std::string& packed) {
    const std::size_t start = packed.size();
    packed.resize(start + layout.SlotLength());
    char* bytes = packed.data() + start;
    for (const Field<Record>& field : layout.Fields()) {
        switch (field.Kind) {
        case FieldKind::Int16:
            StoreLittleEndian(bytes, static_cast<std::uint16_t>(record.*field.Int16Member));
            break;
        case FieldKind::Text: {
            const std::string& text = record.*field.TextMember;
            std::memset(bytes, ' ', field.Length);
            std::copy_n(text.data(), std::min(text.size(), field.Length), bytes);
            break;
        }
        case FieldKind::Double:
            StoreLittleEndian(bytes, std::bit_cast<std::uint64_t>(record.*field.DoubleMember));
            break;
        case FieldKind::Flag:
            StoreLittleEndian(bytes, static_cast<std::uint16_t>(record.*field.FlagMember ? 0xFFFF : 0));
            break;
        }
        bytes += field.Length;
    }
}

/// The whole slot alone.
template <class Record> std::string Pack(const RecordLayout<Record>& layout, const Record& record) {
    std::string slot;
    AppendPacked(layout, record, slot);
    return slot;
}

inline std::int16_t LoadInt16(const char* bytes) {
    return static_cast<std::int16_t>(LoadLittleEndian<std::uint16_t>(bytes));
}
inline double LoadDouble(const char* bytes) {
    return std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(bytes));
}
inline bool LoadFlag(const char* bytes) {
    return LoadLittleEndian<std::uint16_t>(bytes) == 0xFFFF;
}

/// Reads the fields of a whole slot into `record`, whose texts keep their memory.
template <class Record>
void Unpack(const RecordLayout<Record>& layout, std::string_view slot, Record& record) {
    const char* bytes = slot.data();
    for (const Field<Record>& field : layout.Fields()) {
        switch (field.Kind) {
        case FieldKind::Int16:
            record.*field.Int16Member = LoadInt16(bytes);
            break;
        case FieldKind::Text:
            (record.*field.TextMember).assign(TrimEnd({bytes, field.Length}));
            break;
        case FieldKind::Double:
            record.*field.DoubleMember = LoadDouble(bytes);
            break;
        case FieldKind::Flag:
            record.*field.FlagMember = LoadFlag(bytes);
            break;
        }
        bytes += field.Length;
    }
}

/// The bytes of one field of a slot, with the spaces at the end of a text. They last as long as the slot.
template <const auto& Layout, std::size_t Index> std::string_view FieldBytes(std::string_view slot) {
    constexpr std::size_t offset = Layout.OffsetOf(Index);
    constexpr std::size_t length = Layout.Fields()[Index].Length;
    return {slot.data() + offset, length};
}

/// A text of eight bytes at most, without the spaces at its end. Their number is counted without a loop,
/// whose end the processor would have to guess.
template <std::size_t Length> void UnpackShortText(const char* bytes, std::string& text) {
    static_assert(Length <= sizeof(std::uint64_t));
    std::uint64_t withoutSpaces = 0;
    for (std::size_t index = 0; index < Length; ++index)
        withoutSpaces |= std::uint64_t{static_cast<unsigned char>(bytes[index] ^ ' ')} << (8 * index);
    text.assign(bytes, Length);
    text.resize((static_cast<std::size_t>(std::bit_width(withoutSpaces)) + 7) / 8);
}

template <const auto& Layout, std::size_t Index, class Record>
void UnpackField(std::string_view slot, Record& record) {
    constexpr Field<Record> field = Layout.Fields()[Index];
    const std::string_view bytes = FieldBytes<Layout, Index>(slot);
    if constexpr (field.Kind == FieldKind::Int16)
        record.*field.Int16Member = LoadInt16(bytes.data());
    else if constexpr (field.Kind == FieldKind::Text && field.Length <= 8)
        UnpackShortText<field.Length>(bytes.data(), record.*field.TextMember);
    else if constexpr (field.Kind == FieldKind::Text)
        (record.*field.TextMember).assign(TrimEnd(bytes));
    else if constexpr (field.Kind == FieldKind::Double)
        record.*field.DoubleMember = LoadDouble(bytes.data());
    else
        record.*field.FlagMember = LoadFlag(bytes.data());
}

/// The same where the compiler knows the layout: without a loop, and without a choice for each field.
template <const auto& Layout, class Record> void Unpack(std::string_view slot, Record& record) {
    [&]<std::size_t... Index>(std::index_sequence<Index...>) {
        (UnpackField<Layout, Index>(slot, record), ...);
    }
    (std::make_index_sequence<Layout.Fields().size()>());
}

/// Reads some fields alone; the record's others stay as they are.
template <const auto& Layout, auto... Members, class Record>
void UnpackOnly(std::string_view slot, Record& record) {
    (UnpackField<Layout, Layout.IndexOf(Members)>(slot, record), ...);
}

/// One field of a slot, to judge a record before it is unpacked. A text comes with the spaces at its end.
template <const auto& Layout, auto Member> auto Peek(std::string_view slot) {
    constexpr std::size_t index = Layout.IndexOf(Member);
    constexpr FieldKind kind = Layout.Fields()[index].Kind;
    const std::string_view bytes = FieldBytes<Layout, index>(slot);
    if constexpr (kind == FieldKind::Int16)
        return LoadInt16(bytes.data());
    else if constexpr (kind == FieldKind::Text)
        return bytes;
    else if constexpr (kind == FieldKind::Double)
        return LoadDouble(bytes.data());
    else
        return LoadFlag(bytes.data());
}

} // namespace mact
