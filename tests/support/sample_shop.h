#pragma once

#include "tests/support/test_program.h"

#include <map>
#include <string>
#include <utility>

namespace mact {

/// The program with the shop of samples/: its company is current, its pollutants have names, and its
/// materials and usage are imported. The program folder has a copy of the samples, in `samples`.
class SampleShop : public TestProgram {
public:
    SampleShop();

    /// Puts everything back as it was at first, which is quicker than a new shop.
    void Restore();

private:
    std::map<std::pair<std::string, std::string>, std::string> m_firstSettings;
};
} // namespace mact
