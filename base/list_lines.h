#pragma once

#include <string>
#include <vector>

namespace mact {

/// The content of a list or combo box, before it becomes one.
struct ListLine {
    std::string Text; ///< code-page text
    int ItemData = 0;
    friend bool operator==(const ListLine&, const ListLine&) = default;
};
using ListLines = std::vector<ListLine>;
} // namespace mact
