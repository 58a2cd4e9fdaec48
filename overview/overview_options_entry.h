#pragma once

#include "base/messages.h"
#include "overview/overview_options.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// What the window of the overview's options holds, as selected and typed. All texts are UTF-8.
struct OverviewOptionsEntry {
    std::optional<std::int16_t> StartMonth{}; ///< 1 to 12; empty = nothing selected
    std::string StartYear{};
    std::string WarnHeadroom{};
    std::string WarnContent{};
    std::array<std::optional<OperationOption>, Operations.size()> OptionOf{}; ///< empty = not chosen
    std::string Address{};
};

/// One message per failed check, in the order of the form.
FormErrors CheckOverviewOptions(const OverviewOptionsEntry& entry);

/// Month and year of a month from 1/1900 to 12/9999, or neither.
bool HasWholeStart(const OverviewOptionsEntry& entry);
/// A number from 0 to 100.
bool IsPercent(std::string_view text);
/// Without line ends, tabs and other control characters.
bool IsOneLine(std::string_view utf8Text);

/// As in a list of choices: "Emission average".
std::string_view ChoiceText(const std::optional<OperationOption>& option);

/// What the window shows of the options at first.
OverviewOptionsEntry EntryOf(const OverviewOptions& options);
/// The options of an entry that passed every check. What the window does not show stays as in `before`.
OverviewOptions OptionsOf(const OverviewOptionsEntry& entry, const OverviewOptions& before);
} // namespace mact
