#pragma once

#include "overview/months.h"
#include "overview/overview_csv.h"

#include <string>
#include <string_view>

namespace mact {

/// A month end's figures in words for people. All texts are UTF-8, one line.

/// "Content of pigmented gel coat". `monthEnd` is the figure's.
std::string FigureName(const FigureLine& line, MonthNumber monthEnd);

/// The state in words or, of a figure that is not judged, the value: "Differs (rounding)", "221.56 kg".
/// `months` is MonthFigures::Months.
std::string FigureOutcome(const FigureLine& line, int months);

/// "Twelve months ending December 2005: report 33.29 %, exact 33.290001 %. Limit 33 %. Over."
std::string FigureStatement(const FigureLine& line, MonthNumber monthEnd, int months);

/// "report 33.29 %, exact 33.290001 %"; "none" without either.
std::string ValueText(std::string_view report, std::string_view exact, std::string_view unit);
} // namespace mact
