#pragma once

#include "overview/shop_figures.h"

#include <array>
#include <cstddef>
#include <vector>

namespace mact {

/// The sums of a window's used materials, from which its figures follow.

/// A row of weighted content.
struct ContentSums {
    bool IsUsed = false;
    double Kg = 0; ///< each material rounded
    double KgOfHap = 0;
    double Pounds = 0;
    double PoundsOfHap = 0; ///< times 100
    bool UsesVacuumBagging = false;
    bool IsEveryMaterialWithin = true; ///< no content is above the row's limit
    bool IsOverInReport = false;       ///< by a line of the weighted-average report
};
/// An operation of the average.
struct OperationSums {
    bool IsUsed = false;
    double MgReport = 0; ///< each material rounded
    double KgReport = 0; ///< of HAP
    double MgExact = 0;
    double KgExact = 0;
    double Limit = 0; ///< kg/Mg
};
struct WindowSums {
    std::array<ContentSums, TableTwoRows.size()> ContentOfRow{};
    std::vector<ContentSums> ContentOfPair{}; ///< of pairs that a user added, by row of the table
    std::array<OperationSums, Operations.size()> OperationOf{};
    std::vector<OperationSums> OperationOfType{}; ///< of types that a user added, by their first such row
    bool IsAverageUsed = false;
    Figure Emissions{}; ///< kg
    Figure Allowance{}; ///< kg
    double EmissionsWithoutFiller = 0;
};
WindowSums SumsOf(const ShopFigures& figures, const std::vector<UsedMaterial>& used);

/// Rounded as the weighted-average report does.
double ReportedContent(const ContentSums& sums);
double ExactContent(const ContentSums& sums);
} // namespace mact
