#include "overview/month_figures.h"

#include "base/numbers.h"

#include <algorithm>

namespace mact {
namespace {

/// `part` in percent of `whole`.
double PercentOf(double part, double whole) {
    return part / whole * 100;
}

} // namespace

int Badness(State state) {
    switch (state) {
    case State::Over:
        return 5;
    case State::Differs:
        return 4;
    case State::None:
        return 3;
    case State::TooEarly:
        return 2;
    case State::Within:
        return 1;
    case State::NotUsed:
        break;
    }
    return 0;
}

bool IsTrouble(State state) {
    return state == State::Over || state == State::Differs;
}

State WorseOf(State left, State right) {
    return Badness(right) > Badness(left) ? right : left;
}

double RoundDecimal(double number, double scale) {
    constexpr double noise = 1e-12; // of the scale
    const double hundredths = number * 100;
    const double half = std::floor(hundredths) + 0.5;
    const bool isHalf = std::abs(hundredths - half) <= std::max(scale, std::abs(number)) * 100 * noise;
    return isHalf ? std::nearbyint(half) / 100 : RoundTo(number, 2);
}

Figure AverageFigures::Headroom() const {
    return {RoundDecimal(Allowance.Report - Emissions.Report, std::max(Allowance.Report, Emissions.Report)),
            Allowance.Exact - Emissions.Exact};
}

Figure AverageFigures::HeadroomPercent() const {
    const double report = PercentOf(Allowance.Report - Emissions.Report, Allowance.Report);
    return {Allowance.Report == 0 ? std::nan("") : RoundDecimal(report, std::max(100.0, std::abs(report))),
            Allowance.Exact == 0 ? std::nan("")
                                 : PercentOf(Allowance.Exact - Emissions.Exact, Allowance.Exact)};
}
} // namespace mact
