#pragma once

#include "tests/safety/faults/fault_shop.h"

#include <optional>
#include <string>
#include <vector>

namespace mact {

/// A task of the program, in which each of its system calls is made to fail.
///
/// It writes its failures to the error output, a line each, and then ends with status 1.
struct SweptTask {
    ChildStart Start{};
    /// Of a task that does something and then takes it back: what it does. That stays if it cannot be taken
    /// back, or could not be noted: then the task ends its output with ThereIsNothingToUndo.
    std::optional<ChildStart> FirstHalf{};
    bool PrintsWhatIsThere = false; ///< its output is no claim that something was done
    bool IsImport = false;          ///< one that ends by itself keeps the records that it has stored
    bool IsBackup = false;
    bool IsCopiedLater =
        false;              ///< the backup is still being copied when the program says that it is complete
    bool IsRestore = false; ///< all data files are replaced, or none; the next start finishes it
};

inline constexpr const char* ThereIsNothingToUndo = "There is nothing to undo.\n";

/// Tries the faults one after another. Fails the test for each that breaks a promise: what is in the files is
/// as before or as after the task, nothing else has changed or is left over, a failure is told in one
/// sentence, success is told only of what happened, and the next run without a fault works.
///
/// With MACT_SWEEP=all every call fails in every way. Otherwise one call of each kind is chosen for each way,
/// by MACT_TEST_SEED or always the same.
void SweepFaults(FaultShop& shop, const SweptTask& task);

/// Gives the shop a backup set, backups/talvor_backupset_5, and a third company after it.
void PrepareRestore(FaultShop& shop);
} // namespace mact
