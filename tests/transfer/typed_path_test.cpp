#include "base/text.h"
#include "tests/support/test_program.h"
#include "transfer/transfer.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class TypedPathTest : public testing::Test {
protected:
    TemporaryFolder Folder;
    std::string Text = PathText(Folder.Path() / "list.txt");

    void WriteFile(const std::string& text) const { WriteContent(PathFromUtf8(text), ""); }
};

TEST_F(TypedPathTest, BlanksAroundAPathDoNotCount) {
    WriteFile(Text);
    EXPECT_EQ(PathText(TypedPath("  " + Text)), Text);
}

TEST_F(TypedPathTest, BlanksAroundThePathOfAMissingFileDoNotCountEither) {
    EXPECT_EQ(PathText(TypedPath("  " + Text + " ")), Text);
}

TEST_F(TypedPathTest, AFileWhoseNameEndsInBlanksIsMeantWhereItExists) {
    WriteFile(Text);
    WriteFile(Text + "  ");
    EXPECT_EQ(PathText(TypedPath(Text + "  ")), Text + "  ");
}

TEST_F(TypedPathTest, AFolderWhoseNameEndsInBlanksIsNotMeant) {
    std::filesystem::create_directory(PathFromUtf8(Text + " "));
    EXPECT_EQ(PathText(TypedPath(Text + " ")), Text);
}

} // namespace
} // namespace mact
