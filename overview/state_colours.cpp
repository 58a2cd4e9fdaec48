#include "overview/state_colours.h"

#include "dialogs/hint_label.h"

namespace mact {
namespace {

/// `onLight` or `onDark`, by the palette.
QColor Either(const QPalette& palette, const char* onLight, const char* onDark) {
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    return QColor(QLatin1String(isDark ? onDark : onLight));
}

} // namespace

// Each has at least 4.5 to 1 against white, or against a base of #1e1e1e.
QColor ColourOf(State state, bool isNarrow, const QPalette& palette) {
    switch (state) {
    case State::Within:
        return isNarrow ? DoubtColour(palette) : Either(palette, "#1b6e3c", "#7fd6a0");
    case State::Over:
    case State::None:
        return Either(palette, "#b3261e", "#ff8a80");
    case State::Differs:
        return Either(palette, "#7a3e9d", "#d9a6f2");
    case State::TooEarly:
    case State::NotUsed:
        break;
    }
    return palette.color(QPalette::Text);
}

QColor FigureColour(const QPalette& palette) {
    return Either(palette, "#1f7a8c", "#5cc3d8");
}
} // namespace mact
