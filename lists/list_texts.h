#pragma once

#include <string_view>

namespace mact {

/// Words of the list browser.
namespace ListTexts {

inline constexpr const char* MaterialsTitle = "Maintain Material";
inline constexpr const char* MaterialsFrame = "Materials";
inline constexpr const char* UsageTitle = "Maintain Usage";
inline constexpr const char* UsageFrame = "Usages";
inline constexpr const char* Apply = "&Apply";
inline constexpr const char* Reset = "&Reset";
inline constexpr std::string_view NeedsFilter = "Please select Material Id and/or Year to apply the filter.";

// Around the line that is to be deleted.
inline constexpr std::string_view AskDelete = "Are you sure you want to delete ";
inline constexpr std::string_view CannotBeUndone = "? This can not be undone.";

} // namespace ListTexts

} // namespace mact
