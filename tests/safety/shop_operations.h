#pragma once

#include "base/app_context.h"

#include <ostream>
#include <string>
#include <vector>

namespace mact {

/// How an operation tells its caller that it did not succeed.
enum class Telling {
    ByAnswer,  ///< what it returns says so
    ByMessage, ///< it returns the same whatever happens: nothing but the message says so
};

/// An operation of the program that works with files, as a window or the command line has it done in the
/// sample shop.
struct ShopOperation {
    const char* Name;
    /// False when it says that it did not succeed.
    bool (*Run)(AppContext& app);
    Telling Tells;
};
inline void PrintTo(const ShopOperation& operation, std::ostream* out) {
    *out << operation.Name;
}

/// Everything that writes, and everything that reads. No usage may be of UnusedMaterial.
const std::vector<ShopOperation>& ShopOperations();

inline constexpr std::int16_t UnusedMaterial = 29; ///< the last of the shop

/// The files of the program folder that ShopOperations() import.
inline constexpr const char* NewMaterialsFile = "new materials.txt";
inline constexpr const char* NewUsageFile = "new usage.txt";
std::string NewMaterials();
std::string NewUsage();
/// The file of the program folder that they export to.
inline constexpr const char* ExportedFile = "exported.txt";

/// The length of the slots of a file that grows by records; 0 = it is replaced as a whole.
std::size_t SlotLengthOf(const std::string& fileName);
} // namespace mact
