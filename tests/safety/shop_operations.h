#pragma once

#include "base/app_context.h"

#include <ostream>
#include <string>
#include <vector>

namespace mact {

/// How an operation tells its caller that it failed.
enum class Telling {
    ByAnswer,  ///< by what it returns
    ByMessage, ///< only by the message: it returns the same whatever happens
};

/// An operation of the program that works with files, done in the sample shop as a window or the command line
/// does it.
struct ShopOperation {
    const char* Name;
    /// False if it reports failure.
    bool (*Run)(AppContext& app);
    Telling Tells;
};
inline void PrintTo(const ShopOperation& operation, std::ostream* out) {
    *out << operation.Name;
}

/// Everything that writes, and everything that reads. There must be no usage of UnusedMaterial, and
/// DeleteSomeRecords must have been called.
const std::vector<ShopOperation>& ShopOperations();

inline constexpr std::int16_t UnusedMaterial = 29; ///< the last of the shop

/// Marks DeletedMaterial and DeletedUsages as deleted, for the operations that bring records back. The
/// material's usage becomes usage of the first.
void DeleteSomeRecords(const AppContext& app);
inline constexpr std::int16_t DeletedMaterial = 28;
inline constexpr std::int16_t DeletedUsages[] = {5, 60};

/// The files in the program folder that ShopOperations() import.
inline constexpr const char* NewMaterialsFile = "new materials.txt";
inline constexpr const char* NewUsageFile = "new usage.txt";
std::string NewMaterials();
std::string NewUsage();
/// The file in the program folder that they export to.
inline constexpr const char* ExportedFile = "exported.txt";

/// The slot length of a file that grows record by record; 0 = the file is replaced as a whole.
std::size_t SlotLengthOf(const std::string& fileName);
} // namespace mact
