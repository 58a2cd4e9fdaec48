#pragma once

#include "overview/months.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// The figures of one month end, for the twelve months that end with it. Most exist twice: as the reports
/// calculate them, rounded on the way (Report), and not rounded, with the filler (Exact). One that is
/// infinite or not a number, since a record is damaged, is no answer: HasAnswer tells.

enum class State {
    None, ///< a figure that is not finite has none
    Within,
    Over,
    Differs,  ///< report and exact figure do not agree, or the average is a tie
    TooEarly, ///< fewer than twelve months since the start month
    NotUsed,
};
/// Larger for a worse state: over, differs, none, too early, within, not used.
int Badness(State state);
/// Over or differs.
bool IsTrouble(State state);
State WorseOf(State left, State right);

/// Why the two figures do not agree.
enum class Cause {
    None,
    Tie,           ///< emissions equal to the allowance: 63.5710(b) says "do not exceed", (e) "less than"
    Filler,        ///< no report applies it
    VacuumBagging, ///< judged by limits that are not in Table 2
    Rounding,
};
struct Verdict {
    State Is = State::None;
    Cause Why = Cause::None;
    bool operator==(const Verdict&) const = default;
};

struct Figure {
    double Report = 0;
    double Exact = 0;
    bool HasAnswer() const { return std::isfinite(Report) && std::isfinite(Exact); }
};

/// The weighted content of a row of Table 2, or of a pair that a user added to the table.
struct ContentFigure {
    std::string Item{};                ///< code-page text
    std::optional<std::size_t> Row{};  ///< in TableTwoRows
    std::optional<std::size_t> Pair{}; ///< in the material-type table: of a pair that a user added
    Figure Content{};                  ///< weight percent
    std::optional<double> Limit{};     ///< weight percent; empty = no limit
    double Pounds = 0;                 ///< used
    bool IsEveryMaterialWithin = true; ///< no content above the limit: nothing need be averaged (63.5713(b))
    Verdict Judged{};
};
/// A used filled resin (63.5714).
struct FilledFigure {
    std::size_t Material = 0; ///< in ShopRecords::Materials
    double PointValue = 0;    ///< kg/Mg, with the filler, not rounded
    double Limit = 0;         ///< kg/Mg
    Verdict Judged{};
};
/// HAP emissions against what the same amounts may emit (63.5710(b)), kg.
struct AverageFigures {
    Figure Emissions{};
    Figure Allowance{};
    Verdict Judged{};
    /// What is left, kg; below 0 if the emissions are over. Report is rounded to 2 decimals.
    Figure Headroom() const;
    /// The same in percent of the allowance. Of no allowance there is none: not a number.
    Figure HeadroomPercent() const;
};
/// The point value of an operation (63.5710(c)).
struct PointValueFigure {
    std::string Item{};             ///< code-page text
    std::optional<double> Report{}; ///< kg/Mg, rounded to 2 decimals; empty if no amount is left once rounded
    double Exact = 0;               ///< kg/Mg
    double Limit = 0;               ///< kg/Mg
};
/// What was used in the last month alone (63.5767(c)(1)).
struct AmountFigure {
    std::string Item{}; ///< code-page text
    double Kilograms = 0;
};

/// Rounded to 2 decimals, halves to even, as if calculated with decimal fractions: a number that binary ones
/// have moved off a half counts as that half. `scale` is the size of the largest number that went into it.
double RoundDecimal(double number, double scale);

struct MonthFigures {
    MonthNumber MonthEnd = 0;
    int Months = 0;                          ///< since the start month, 12 at most
    std::vector<MonthNumber> WithoutEntry{}; ///< of the window, from the start month on
    bool IsUsed = false;                     ///< whether anything was used in the window
    std::vector<ContentFigure> Contents{};   ///< of what was used; Table 2's rows first
    std::vector<FilledFigure> Filled{};
    AverageFigures Average{};
    std::vector<PointValueFigure> PointValues{};
    std::vector<AmountFigure> Amounts{};
};
} // namespace mact
