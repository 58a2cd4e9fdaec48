#include "materials/units.h"

#include "base/numbers.h"

#include <cmath>

namespace mact {

Result<double> ConvertQuantity(double quantity, double density, std::int16_t unit, std::int16_t wantedUnit) {
    constexpr double gallonsPerMgal = 1000;
    double converted = quantity;
    if (wantedUnit == UnitLbs) {
        if (unit != UnitLbs) converted = quantity * density * gallonsPerMgal; // Mgal * lb/gal * gal/Mgal
    } else if (unit != UnitMgal) {
        converted = quantity / (density * gallonsPerMgal);
    }
    if (!std::isfinite(converted))
        return Failure{.Doing = "convert the quantity " + NumberText(quantity) + " with the density " +
                                NumberText(density) + " lb/gal",
                       .Reason = "the result is too large or not a number"};
    return converted;
}

double Kilograms(double pounds) {
    // On purpose not 2.20462: filed reports use this factor.
    return pounds / 2.2046;
}
} // namespace mact
