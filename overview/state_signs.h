#pragma once

#include "overview/month_figures.h"

#include <QColor>
#include <QPalette>
#include <QString>

namespace mact {

/// How a state looks in the overview's windows: a sign and a colour, so that colour is never alone.

/// Followed by a blank.
QString SignOf(State state);
/// Readable on the palette's Base. One that is only narrowly within has a colour of its own.
QColor ColourOf(State state, bool isNarrow, const QPalette& palette);

/// Of a line of figures in a chart, or a bar.
QColor FigureColour(const QPalette& palette);
} // namespace mact
