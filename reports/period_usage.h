#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "materials/material_record.h"
#include "usage/usage_record.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The live usage of a report's months, sorted by material once so that no report searches it in a loop.
class PeriodUsage {
public:
    explicit PeriodUsage(const std::vector<UsageRecord>& records);

    bool IsEmpty() const { return m_quantities.empty(); }
    /// The material's quantities in pounds, added up in file order; 0 without any.
    Result<double> PoundsUsed(const MaterialRecord& material) const;
    Result<double> PoundsUsed(std::int16_t materialId, double density, std::string_view customId) const;

private:
    struct Quantity {
        double Amount = 0;
        std::int16_t Unit = 0;
    };
    std::span<const Quantity> QuantitiesOf(std::int16_t materialId) const;

    std::vector<Quantity> m_quantities; ///< by MaterialId, those of one in file order
    /// Where in m_quantities those of a MaterialId end. Those of the next one begin there.
    std::vector<std::uint32_t> m_ends;
};

/// `monthList` is as BuildPeriodList gives it.
Result<PeriodUsage> ReadPeriodUsage(AppContext& app, const std::string& monthList);

double Kilograms(double pounds);

/// The material as a failure's description names it: the material "GC-110". UTF-8.
std::string Named(std::string_view customId);

} // namespace mact
