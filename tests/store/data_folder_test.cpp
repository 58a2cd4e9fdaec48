#include "store/data_folder.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(DataFolderTest, FilesLieInTheDataFolderBesideTheProgram) {
    TestProgram program;
    EXPECT_EQ(DataFolder(program.App), program.App.ProgramFolder / "data");
    EXPECT_EQ(HapContentsFile(program.App), program.DataFile("hapcontents.talvor"));
    EXPECT_EQ(CompaniesFile(program.App), program.DataFile("companies.talvor"));
    EXPECT_EQ(MaterialsFile(program.App), program.DataFile("1_materials.talvor"));
    EXPECT_EQ(UsageFile(program.App), program.DataFile("1_usage.talvor"));
    EXPECT_EQ(AdditionalNamesFile(program.App), program.DataFile("1_additional.talvor"));
}

TEST(DataFolderTest, SwitchingTheCompanyChangesItsOwnFilesOnly) {
    TestProgram program;
    program.App.CurrentCompanyId = 32767;
    EXPECT_EQ(MaterialsFile(program.App), program.DataFile("32767_materials.talvor"));
    EXPECT_EQ(UsageFile(program.App), program.DataFile("32767_usage.talvor"));
    EXPECT_EQ(AdditionalNamesFile(program.App), program.DataFile("32767_additional.talvor"));
    EXPECT_EQ(HapContentsFile(program.App), program.DataFile("hapcontents.talvor"));
    EXPECT_EQ(CompaniesFile(program.App), program.DataFile("companies.talvor"));
}

} // namespace
} // namespace mact
