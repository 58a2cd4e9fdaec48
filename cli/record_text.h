#pragma once

#include "base/text.h"

#include <string>
#include <string_view>

namespace mact {

/// Record text as it is printed, wherever to: a file may be shown on a terminal later.
inline std::string Shown(std::string_view codePageText) {
    return Printable(Utf8FromCodePage(Trim(codePageText)));
}
} // namespace mact
