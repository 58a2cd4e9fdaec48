#pragma once

#include <QPalette>

namespace mact {

/// The colours of all windows. They are the program's own, so that they are legible whatever the desktop
/// gives: text has at least 4.5 to 1 against what is behind it, disabled text 3 to 1.
enum class Colours { Light, Dark };

/// With a colour for every role, in active, inactive and disabled windows.
QPalette PaletteOf(Colours colours);

/// Shows the windows that are open and those that will be in these colours.
void ShowWindowsIn(Colours colours);
} // namespace mact
