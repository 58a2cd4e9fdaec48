#pragma once

#include "overview/month_figures.h"

#include <QColor>
#include <QPalette>

namespace mact {

/// Of a state, readable on the palette's Base. One that is only narrowly within has a colour of its own.
QColor ColourOf(State state, bool isNarrow, const QPalette& palette);

/// Of a line of figures in a chart, or a bar.
QColor FigureColour(const QPalette& palette);
} // namespace mact
