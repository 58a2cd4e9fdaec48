#include "materials/point_value.h"

#include "base/numbers.h"

#include <cmath>

namespace mact {

double PointValue(const HapContentRecord& method, double hapContent) {
    // On purpose without the filler, even for filled resins, and without a material's own emission factor.
    return RoundTo(method.EfCoefficient * std::pow(hapContent, method.EfExponent), 2);
}
} // namespace mact
