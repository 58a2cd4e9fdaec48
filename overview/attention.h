#pragma once

#include "overview/months.h"
#include "overview/shop_figures.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What not to trust in the figures of a month end, and what is worth a look before a report goes out.
///
/// A usage record belongs to a month end if its month is in the window, or if its period is empty, since
/// every window then counts it. One in no window at all (03/2005 is not written M/YYYY) is a finding at
/// every month end, as nobody can tell where it belongs; nothing else is said about it.
///
/// A material is looked at if the window has live usage of it with a quantity other than 0: what is wrong
/// with any other is in no figure. The content of closed molding is in none either.

enum class AttentionKind {
    NotTrusted, ///< counted wrongly or not at all
    WorthALook,
};
/// Which figures of its material a finding makes wrong.
enum class Reach {
    All,
    AllButAmounts, ///< a wrong content or filler
    AverageAlone,  ///< an amount that only the emission average rounds away
};
struct Attention {
    AttentionKind Kind = AttentionKind::NotTrusted;
    std::optional<std::size_t> Material{}; ///< in ShopRecords::Materials; empty if a use has none
    std::optional<std::size_t> Use{};      ///< in ShopRecords::Usage: the record to mend, else it is Material
    std::optional<MonthNumber> Month{};    ///< a month without entry
    Reach Touches = Reach::All;
    std::string Text{}; ///< UTF-8, one line: the record and what the finding does to the figures
};

/// Of the twelve months that end with `monthEnd`; what is not trusted first. Within each kind months without
/// entry come first, then materials, then usage, each in file order. The company's number is for the names of
/// the files.
std::vector<Attention> FindAttention(const ShopFigures& shop, MonthNumber monthEnd, std::int16_t companyId);
/// What is not trusted alone, in less time.
std::vector<Attention> FindNotTrusted(const ShopFigures& shop, MonthNumber monthEnd, std::int16_t companyId);
} // namespace mact
