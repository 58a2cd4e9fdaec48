#pragma once

#include "tests/support/test_program.h"

#include <string>
#include <vector>

namespace mact {

/// A company whose records are made from the lines of import files.
class OverviewShop : public TestProgram {
public:
    OverviewShop();
    /// As in PR-A|of R1|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0. An import leaves the
    /// filler out; here the last field becomes it, as if it had been typed in afterwards.
    void ImportMaterials(const std::vector<std::string>& lines);
    /// As in PR-A|7|2004|4000|lbs.
    void ImportUsage(const std::vector<std::string>& lines);
};
} // namespace mact
