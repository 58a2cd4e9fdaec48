#pragma once

#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {

/// A program with the default material types, whose files can be made to fail.
class TransferTest : public testing::Test, public TestProgram {
protected:
    TransferTest() { EXPECT_TRUE(CreateDefaultHapContents(Faulty)); }

    LimitedFiles FaultyFiles;
    AppContext Faulty{Prompts, Settings, Programs, Dialogs, Calendar, FaultyFiles, App.ProgramFolder, 1};
    std::filesystem::path Source = Folder.Path() / "source.txt";
    std::filesystem::path Target = Folder.Path() / "target.txt";
    int Processed = -1;
    int Errors = -1;
    std::optional<int> ExportErrors;

    void ImportMaterials(std::string_view content) {
        WriteContent(Source, content);
        EXPECT_EQ(ImportMaterialFile(Faulty, Source, Processed, Errors), 0);
    }
    void ImportUsage(std::string_view content) {
        WriteContent(Source, content);
        EXPECT_EQ(ImportUsageFile(Faulty, Source, Processed, Errors), 0);
    }
    void ExportMaterials() { EXPECT_EQ(ExportMaterialFile(Faulty, Target, Processed, ExportErrors), 0); }
    void ExportUsage() { EXPECT_EQ(ExportUsageFile(Faulty, Target, Processed, ExportErrors), 0); }

    std::filesystem::path MaterialLogFile() const { return ProgramFile("material_import_errors.txt"); }
    std::filesystem::path UsageLogFile() const { return ProgramFile("usage_import_errors.txt"); }
    std::filesystem::path ExportLogFile() const { return ProgramFile("usage_export_errors.txt"); }
    std::filesystem::path MaterialData() const { return DataFile("1_materials.talvor"); }
    std::filesystem::path UsageData() const { return DataFile("1_usage.talvor"); }

    /// All live materials, in file order.
    std::vector<MaterialRecord> Materials() {
        std::vector<MaterialRecord> found;
        FindMaterials(App, {}, found);
        return found;
    }
    std::vector<UsageRecord> Usage() {
        std::vector<UsageRecord> found;
        FindUsage(App, {}, found);
        return found;
    }
    void AddMaterial(const std::string& customId) {
        EXPECT_FALSE(SaveMaterial(App, {.CustomId = customId,
                                        .Description = "a resin",
                                        .MaterialType = "Production resin",
                                        .ApplicationMethod = "Spray",
                                        .Contents = "0|0|0|0|0|0",
                                        .Factors = "0|0|0|0|0|0"}));
    }
    void Delete(std::int16_t materialId) {
        EXPECT_FALSE(DeleteMaterial(App, materialId, [](std::int16_t) { return Result<bool>(false); }));
    }
    /// A failure that ends a transfer shows exactly one message.
    void ExpectOneFailure(std::string_view part) const {
        ASSERT_EQ(Prompts.Shown.size(), 1U);
        EXPECT_EQ(Prompts.Shown[0].Kind, PromptKind::Failure);
        EXPECT_NE(Prompts.Shown[0].Text.find(part), std::string::npos) << Prompts.Shown[0].Text;
    }
};

inline std::string GoodMaterial(const std::string& customId) {
    return customId + "|a resin|Production resin|Spray|9.1|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n";
}
} // namespace mact
