#pragma once

#include <string>
#include <vector>

namespace mact {

/// A line of a list or combo box as the core builds it, without Qt.
struct ListLine {
    std::string Text; ///< code-page text
    int ItemData = 0;
    friend bool operator==(const ListLine&, const ListLine&) = default;
};
using ListLines = std::vector<ListLine>;
} // namespace mact
