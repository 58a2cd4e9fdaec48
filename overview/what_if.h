#pragma once

#include "base/result.h"
#include "overview/months.h"
#include "overview/shop_figures.h"
#include "overview/shop_records.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What would be if some materials were different, or used differently: the same figures, from a copy of the
/// records with changes. The records themselves stay as they are, in memory and on the disk.

enum class WhatIfKind {
    Content,     ///< HAP content, weight percent
    Density,     ///< lb/gal
    Filler,      ///< weight percent
    Method,      ///< application method
    Amount,      ///< each quantity of a month and of those after it, times a factor
    Replacement, ///< another material in its place, of the same mass
    LeftOut,     ///< none of it used
};
struct WhatIfChange {
    WhatIfKind Kind = WhatIfKind::Content;
    std::int16_t MaterialId = 0; ///< whose, by the record's own number
    double Number = 0;           ///< the content, density, filler or factor
    std::string Method{};        ///< code-page text
    MonthNumber From = 0;        ///< the first month whose amount changes; a period that is no month stays
    std::int16_t Replacement = 0;
};

/// A copy with the changes, made one after the other. Months keep their entries, with a quantity of 0 where
/// nothing is used any more. A Failure if a change names something that is not there, or a number that cannot
/// be.
Result<ShopRecords> Applied(const ShopRecords& shop, const std::vector<WhatIfChange>& changes);
/// A sentence for each change, in UTF-8: "The HAP content of GC-110 is 31 % instead of 33 %." What was before
/// is what the changes in front of it have left. Fails as Applied does.
Result<std::vector<std::string>> SentencesOf(const ShopRecords& shop,
                                             const std::vector<WhatIfChange>& changes);

/// A figure before and after. Its Report numbers are rounded only where the figure's own are.
struct Comparison {
    Figure Before{};
    Figure After{};
    Figure Difference{}; ///< after less before; Report is rounded to 2 decimals
};
/// A row that is not used before, or not after, has only the other figure, and no difference.
struct ContentComparison {
    std::string Item{};            ///< code-page text
    std::optional<double> Limit{}; ///< weight percent; empty = no limit
    std::optional<Figure> Before{};
    std::optional<Figure> After{};
    std::optional<Figure> Difference{};
    Verdict JudgedBefore{}; ///< State::NotUsed if it is not
    Verdict JudgedAfter{};
};
struct MonthComparison {
    MonthNumber MonthEnd = 0;
    Comparison Emissions{}; ///< kg
    Comparison Allowance{}; ///< kg
    Comparison Headroom{};  ///< kg
    Verdict JudgedBefore{}; ///< the average
    Verdict JudgedAfter{};
    std::vector<ContentComparison> Contents{}; ///< in the order of MonthFigures
};
/// Both at the same month end, from the same material-type table.
MonthComparison Compare(const MonthFigures& before, const MonthFigures& after);
/// Every month end from the first to the last, oldest first.
std::vector<MonthComparison> Compare(const ShopFigures& before, const ShopFigures& after, MonthNumber first,
                                     MonthNumber last);
} // namespace mact
