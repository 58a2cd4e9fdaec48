#pragma once

#include "overview/overview_options.h"
#include "overview/shop_figures.h"
#include "overview/untrusted_figures.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// A month end's figures in words. All texts are UTF-8. They say what the arithmetic gives, and never that a
/// shop is compliant: that is the responsible official's to say.

/// One of the three ways in which the rule judges.
struct Answer {
    std::string Question{};   ///< "Every material within its limit"
    State Is = State::None;   ///< the worst of what it is made of
    std::string Text{};       ///< the state in words, with what matters most
    std::string Meaning{};    ///< one sentence: what it means, and how it relates to the other two
    std::string Report{};     ///< which report shows it
    bool IsNarrow = false;    ///< within, by less than the user wants to be warned of
    std::size_t Findings = 0; ///< that make it untrustworthy
};
/// Every material, the weighted contents, the emissions.
std::vector<Answer> AnswersOf(const ShopFigures& shop, const MonthFigures& figures,
                              const UntrustedFigures& untrusted = {}, const OverviewOptions& options = {});

/// Within, by fewer points of content below its limit than the user wants to be warned of.
bool IsNarrow(const ContentFigure& content, const OverviewOptions& options);

/// As it stands in a card, which is narrow; the table has the whole name.
std::string CardName(std::string_view codePageText);
/// Names, separated by semicolons. Only the first few: there can be thousands of filled resins, and a card
/// has to fit on a small screen.
std::string FirstFew(const std::vector<std::string>& names);

/// The state in words for people: "Within", "Over", "Differs (rounding)", "Too early (3 of 12 months)".
std::string StateInWords(const Verdict& verdict, int months);

/// The reported emissions in percent of the allowance, as PercentText gives it; empty without an allowance.
std::string PercentOfAllowance(const AverageFigures& average);

/// What is left of the allowance: "1,195.20 kg left", "5.04 kg too much".
std::string HeadroomInWords(const AverageFigures& average);

/// Where the average stands, as the verdict says it: "emission average 99.0 % of the allowance", or why there
/// is no such percentage.
std::string AverageInWords(const MonthFigures& figures);

/// How many figures are over or differ.
std::size_t CountTroubles(const MonthFigures& figures);
/// "2 figures are over or differ"
std::string TroublesInWords(std::size_t troubles);

/// With one decimal, or as many as it takes to tell it from 100: "99.0 %", "100.004 %".
std::string PercentText(double percent);

/// "The newest month with use is December 2005.", or why there is none.
std::string NewestUseText(const ShopFigures& shop);

/// The main window's line: "DEC 2005: emission average 99.0 % of the allowance; 2 points need attention".
/// Without such points it says whether a figure is over or differs.
std::string VerdictLine(const MonthFigures& figures, std::size_t attention);
} // namespace mact
