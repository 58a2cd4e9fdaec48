#pragma once

#include <string>

namespace mact {

/// What a window says, in a label, about entries while they are typed. It never stops a save.
struct Hint {
    std::string Text{};      ///< UTF-8; empty = nothing to say
    bool IsDoubtful = false; ///< the entries may be a mistake
};
} // namespace mact
