#pragma once

#include "materials/units.h"
#include "store/record_layout.h"

#include <cstdint>
#include <string>

namespace mact {

/// How much of one material was used in one calendar month.
struct UsageRecord {
    std::int16_t UsageId = 0;    ///< the record's own number; 0 = not stored yet
    std::int16_t MaterialId = 0; ///< the material's number, not its Material ID text
    std::string Period{};  ///< month without leading zero, "/", year, as in 3/2005; at most 7 characters
    double Quantity = 0;   ///< in Unit
    std::int16_t Unit = 0; ///< UnitMgal or UnitLbs
    bool Active = true;    ///< false = deleted; the slot stays
};
inline constexpr std::tuple UsageFields{
    Int16(&UsageRecord::UsageId),   Int16(&UsageRecord::MaterialId), Text(&UsageRecord::Period, 7),
    Double(&UsageRecord::Quantity), Int16(&UsageRecord::Unit),       Flag(&UsageRecord::Active),
};
inline constexpr RecordLayout UsageLayout{32, UsageFields};
static_assert(UsageLayout.PackedLength() == 23); // files of earlier versions depend on it
} // namespace mact
