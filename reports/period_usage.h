#pragma once

#include "base/result.h"
#include "materials/material_record.h"
#include "store/data_folder.h"
#include "usage/usage_record.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The live usage of a report's months, sorted by material once so that no report searches it in a loop.
class PeriodUsage {
public:
    explicit PeriodUsage(const std::vector<UsageRecord>& records);

    bool IsEmpty() const { return m_quantities.empty(); }
    /// The material's quantities in pounds, added up in file order; 0 if there are none. A Failure if the sum
    /// becomes too large or not a number on the way.
    Result<double> PoundsUsed(const MaterialRecord& material) const;
    Result<double> PoundsUsed(std::int16_t materialId, double density, std::string_view customId) const;

private:
    struct Quantity {
        std::int16_t MaterialId = 0;
        std::int16_t Unit = 0;
        double Amount = 0;
    };
    std::vector<Quantity> m_quantities; ///< sorted by MaterialId, then in file order
};

/// `monthList` is a list from BuildPeriodList.
Result<PeriodUsage> ReadPeriodUsage(const DataFiles& data, const std::string& monthList);
} // namespace mact
