#pragma once

#include <QLabel>

namespace mact {

/// Lets keys reach and copy the label, which shows a value, an address or an outcome: Tab reaches it after
/// the window's fields and buttons, in the order of the calls, unless it is empty. It then has a frame, and
/// Ctrl+C copies its text, or the part of it that is selected. Captions and hints that screen readers say
/// with their field need none of this. To be called when the window has all its controls.
void MakeCopyable(QLabel& label);
bool IsCopyable(const QLabel& label);
} // namespace mact
