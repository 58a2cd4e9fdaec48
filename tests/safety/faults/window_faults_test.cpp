#include "tests/safety/faults/fault_sweep.h"

#include <gtest/gtest.h>

#include <string_view>

namespace mact {
namespace {

/// Tasks of window_task.
constexpr const char* Tasks[] = {
    "SaveNewMaterial",
    "SaveEditedMaterial",
    "DeleteMaterial",
    "SaveNewUsage",
    "SaveEditedUsage",
    "DeleteUsage",
    "SaveMonthSheet",
    "SaveNewCompany",
    "SaveEditedCompany",
    "SelectCompany",
    "SaveNames",
    "SaveConfiguration",
    "ImportMaterials",
    "ImportUsage",
    "ExportMaterials",
    "ExportUsage",
    "Report",
    "Backup",
    "Restore",
};

class FaultsInWindows : public testing::Test {
protected:
    ChildStart Start(const char* task) const {
        ChildStart start = Shop.Program(MACT_WINDOW_TASK, {task, "@"});
        start.Environment.emplace_back("QT_QPA_PLATFORM=offscreen");
        return start;
    }

    FaultShop Shop;
};

class WindowFaults : public FaultsInWindows, public testing::WithParamInterface<const char*> {};

TEST_P(WindowFaults, LoseNothingAndAreToldOnce) {
    const std::string name = GetParam();
    SweptTask task{.Start = Start(GetParam()),
                   .IsImport = name.starts_with("Import"),
                   .IsBackup = name == "Backup",
                   .IsCopiedLater = name == "Backup",
                   .IsRestore = name == "Restore"};
    if (task.IsRestore) PrepareRestore(Shop);
    SweepFaults(Shop, task);
}

INSTANTIATE_TEST_SUITE_P(Tasks, WindowFaults, testing::ValuesIn(Tasks),
                         [](const auto& given) { return std::string(given.param); });

/// A task that does what another one does, and takes it back.
struct TakenBack {
    const char* Name;
    const char* FirstHalf;
};
void PrintTo(const TakenBack& task, std::ostream* out) {
    *out << task.Name;
}

class TakenBackFaults : public FaultsInWindows, public testing::WithParamInterface<TakenBack> {};

TEST_P(TakenBackFaults, LoseNothingAndAreToldOnce) {
    const std::string_view firstHalf = GetParam().FirstHalf;
    SweepFaults(Shop, {.Start = Start(GetParam().Name),
                       .FirstHalf = Start(GetParam().FirstHalf),
                       .IsImport = firstHalf.starts_with("Import")});
}

INSTANTIATE_TEST_SUITE_P(Tasks, TakenBackFaults,
                         testing::Values(TakenBack{"TakeBackDeletedUsage", "DeleteUsage"},
                                         TakenBack{"TakeBackImportedMaterials", "ImportMaterials"}),
                         [](const auto& given) { return std::string(given.param.Name); });

} // namespace
} // namespace mact
