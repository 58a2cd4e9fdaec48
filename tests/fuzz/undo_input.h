#pragma once

#include "store/record_layout.h"
#include "store/undo_file.h"

#include <span>
#include <string>
#include <string_view>

namespace mact {

/// A usage file and the undo file beside it as one input. The undo file's checksums, which no fuzzer would
/// guess, are not in it: the target makes them.
struct UndoInput {
    bool IsRaw = false; ///< the undo file is Raw; otherwise it is made from the rest
    std::string Raw{};
    PlannedChange Change{};
    std::uint64_t AppendedAt = 0;
    std::string Appended{};
    std::string Usage{};
};

/// Any input will do: what it lacks reads as zero.
class InputReader {
public:
    explicit InputReader(std::string_view input) : m_input(input) {}
    std::uint64_t Number(std::size_t bytes) {
        std::uint64_t value = 0;
        for (const char character : Text(bytes))
            value = value << 8U | static_cast<unsigned char>(character);
        return value;
    }
    std::string Text(std::size_t length) {
        std::string text(m_input.substr(0, length));
        m_input.remove_prefix(text.size());
        return text;
    }
    std::string Rest() { return std::string(m_input); }

private:
    std::string_view m_input;
};

inline UndoInput UndoInputOf(std::string_view input) {
    InputReader reader(input);
    UndoInput undo{.IsRaw = reader.Number(1) % 4 == 3};
    if (undo.IsRaw) {
        undo.Raw = reader.Text(reader.Number(2));
    } else {
        undo.Change.OldLength = reader.Number(2);
        undo.Change.SlotLength = 1 + reader.Number(1);
        for (std::uint64_t pieces = reader.Number(1) % 4; pieces > 0; --pieces) {
            Overwritten& piece = undo.Change.Pieces.emplace_back();
            piece.Offset = reader.Number(2);
            const std::size_t length = reader.Number(1);
            piece.Old = reader.Text(length);
            piece.New = reader.Text(length);
            piece.New.resize(piece.Old.size());
        }
        undo.AppendedAt = reader.Number(2);
        undo.Appended = reader.Text(reader.Number(2));
    }
    undo.Usage = reader.Rest();
    return undo;
}
} // namespace mact
