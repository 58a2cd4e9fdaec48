#pragma once

#include "base/result.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mact {

/// What the overview of a company is calculated from, in memory: a copy can be changed to try something out.

/// A live material. All texts are code-page text, trimmed at their ends as records are.
struct ShopMaterial {
    std::int16_t Record = 0;     ///< its place in the materials file, from 1
    std::int16_t MaterialId = 0; ///< the record's own number
    std::string CustomId{};      ///< the user's Material ID
    std::string Description{};
    std::string MaterialType{};
    std::string ApplicationMethod{};
    double Density = 0;        ///< lb/gal
    double HapContent = 0;     ///< weight percent
    double Filler = 0;         ///< weight percent
    double EmissionFactor = 0; ///< alternate emission factor; 0 = none given
};
/// A live usage record.
struct ShopUse {
    std::int16_t Record = 0;     ///< its place in the usage file, from 1
    std::int16_t MaterialId = 0; ///< the material's number
    std::string Period{};        ///< as stored
    double Quantity = 0;         ///< in Unit
    std::int16_t Unit = 0;       ///< UnitMgal or UnitLbs; in a damaged file any number
};
struct ShopRecords {
    std::vector<HapContentRecord> Types{}; ///< the material-type table, in file order
    std::vector<ShopMaterial> Materials{}; ///< in file order
    std::vector<ShopUse> Usage{};          ///< in file order
    std::string UsageName{};               ///< the usage file's name, as in 1_usage.talvor; UTF-8
};

/// Reads the records as they stood at one time. Creates no file and locks none: a missing one counts as
/// empty.
Result<ShopRecords> ReadShopRecords(const DataFiles& data);

/// The files that ReadShopRecords reads.
std::vector<std::filesystem::path> ShopFiles(const DataFiles& data);
} // namespace mact
