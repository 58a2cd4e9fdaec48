#pragma once

#include "overview/month_figures.h"

#include <string_view>

namespace mact {

/// A sign in front of a state's words, in UTF-8, so that colour is never alone.
constexpr std::string_view SignOf(State state) {
    switch (state) {
    case State::Within:
        return "\u2713 ";
    case State::Over:
        return "\u25B2 ";
    case State::Differs:
        return "\u2260 ";
    case State::None:
        return "? ";
    case State::TooEarly:
    case State::NotUsed:
        break;
    }
    return "\u2013 ";
}
} // namespace mact
