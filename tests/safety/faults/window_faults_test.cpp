#include "tests/safety/faults/fault_sweep.h"

#include <gtest/gtest.h>

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

class WindowFaults : public testing::TestWithParam<const char*> {
protected:
    FaultShop Shop;
};

TEST_P(WindowFaults, LoseNothingAndAreToldOnce) {
    const std::string name = GetParam();
    SweptTask task{.Start = Shop.Program(MACT_WINDOW_TASK, {name, "@"}),
                   .IsImport = name.starts_with("Import"),
                   .IsBackup = name == "Backup",
                   .IsCopiedLater = name == "Backup",
                   .IsRestore = name == "Restore"};
    if (task.IsRestore) PrepareRestore(Shop);
    task.Start.Environment.emplace_back("QT_QPA_PLATFORM=offscreen");
    SweepFaults(Shop, task);
}

INSTANTIATE_TEST_SUITE_P(Tasks, WindowFaults, testing::ValuesIn(Tasks),
                         [](const auto& given) { return std::string(given.param); });

} // namespace
} // namespace mact
