#include "base/text.h"
#include "tests/safety/mounted.h"
#include "tests/safety/shop_operations.h"
#include "tests/support/folder_content.h"
#include "tests/support/sample_shop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <unistd.h>

namespace mact {
namespace {

class ShopOnAnotherDisk : public testing::TestWithParam<ShopOperation> {
protected:
    ShopOnAnotherDisk() {
        WriteContent(Shop.ProgramFile(NewMaterialsFile), NewMaterials());
        WriteContent(Shop.ProgramFile(NewUsageFile), NewUsage());
        std::string usage = ContentOf(Shop.DataFile("1_usage.talvor"));
        for (std::size_t at = 0; at < usage.size(); at += 32)
            if (usage[at + 2] == UnusedMaterial) usage[at + 2] = 1;
        WriteContent(Shop.DataFile("1_usage.talvor"), usage);
        DeleteSomeRecords(Shop.App);
    }
    std::map<std::string, std::string> Data() const { return FilesIn(Shop.ProgramFile("data")); }
    bool Run() {
        Shop.Prompts.Shown.clear();
        Shop.App.CurrentCompanyId = 1;
        return GetParam().Run(Shop.App);
    }
    void ExpectOneFailure(const std::string& reason) const {
        ASSERT_EQ(Shop.Prompts.Shown.size(), 1U) << testing::PrintToString(Shop.ShownTexts());
        const Prompt& shown = Shop.Prompts.Shown.front();
        EXPECT_EQ(shown.Kind, PromptKind::Failure);
        EXPECT_TRUE(shown.Text.starts_with("Cannot ")) << shown.Text;
        EXPECT_TRUE(shown.Text.ends_with(": " + reason + ".")) << shown.Text;
        EXPECT_NE(shown.Text.find(PathText(Shop.App.ProgramFolder)), std::string::npos) << shown.Text;
    }
    bool HasShownFailure() const {
        return std::ranges::any_of(Shop.Prompts.Shown,
                                   [](const Prompt& shown) { return shown.Kind == PromptKind::Failure; });
    }

    SampleShop Shop;
};

class ShopOnAFullDisk : public ShopOnAnotherDisk {
protected:
    ShopOnAFullDisk() {
        for (const char* name : {"1_materials.talvor", "1_usage.talvor", "companies.talvor"})
            UseUpTheLastPage(name);
    }
    /// Adds deleted records until the next one needs a new page.
    void UseUpTheLastPage(const std::string& name) const {
        constexpr std::size_t page = 4096;
        const std::size_t slotLength = SlotLengthOf(name);
        std::string content = ContentOf(Shop.DataFile(name));
        while (content.size() % page != 0 && content.size() % page + slotLength <= page)
            content.append(slotLength, '\0');
        WriteContent(Shop.DataFile(name), content);
    }
    /// Moves the program folder to a small disk.
    bool Move(Mounted& disk) {
        const std::filesystem::path elsewhere = Shop.Folder.Path() / "elsewhere";
        std::filesystem::rename(Shop.App.ProgramFolder, elsewhere);
        std::filesystem::create_directory(Shop.App.ProgramFolder);
        if (!disk.SmallDisk(Shop.App.ProgramFolder)) return false;
        std::filesystem::copy(elsewhere, Shop.App.ProgramFolder, std::filesystem::copy_options::recursive);
        return true;
    }
    std::filesystem::path Filler() const { return Shop.ProgramFile("filler"); }
};

// A write that fits into the pages a file already has succeeds, as on a real disk: overwriting a record, for
// instance.
TEST_P(ShopOnAFullDisk, FailsInOneSentenceOrSucceedsAndHarmsNothing) {
    if (!CanMount()) GTEST_SKIP() << "Mounting a small disk is not permitted here.";
    Mounted disk;
    ASSERT_TRUE(Move(disk));
    const auto before = Data();
    FillUp(Filler());
    const bool isDone = Run();
    const auto after = Data();
    for (const auto& [name, content] : before)
        EXPECT_TRUE(after.contains(name)) << name;
    for (const auto& [name, content] : after) {
        EXPECT_FALSE(name.ends_with(".tmp")) << name;
        if (HasShownFailure() && GetParam().Tells == Telling::ByAnswer) {
            EXPECT_TRUE(before.contains(name) && before.at(name) == content) << name;
        }
        const std::size_t slotLength = SlotLengthOf(name);
        EXPECT_TRUE(slotLength == 0 || content.size() % slotLength == 0) << name;
        if (HasShownFailure() && before.contains(name)) {
            EXPECT_TRUE(content.starts_with(before.at(name))) << name;
        }
    }
    if (HasShownFailure()) {
        ExpectOneFailure("No space left on device");
    }
    if (GetParam().Tells == Telling::ByAnswer) {
        EXPECT_EQ(isDone, !HasShownFailure());
    }

    std::filesystem::remove(Filler());
    if (!HasShownFailure()) return;
    EXPECT_TRUE(Run());
    EXPECT_FALSE(HasShownFailure()) << testing::PrintToString(Shop.ShownTexts());
}

INSTANTIATE_TEST_SUITE_P(Operations, ShopOnAFullDisk, testing::ValuesIn(ShopOperations()),
                         [](const auto& given) { return std::string(given.param.Name); });

class ReadOnlyShop : public ShopOnAnotherDisk {
protected:
    /// For root, who may write anywhere, mounts the folder on itself read-only; for anybody else, takes away
    /// the permission to write. Returns the reason that failures give; empty if neither works.
    std::string MakeReadOnly(Mounted& disk) {
        if (::geteuid() != 0) {
            SetWritable(false);
            return "Permission denied";
        }
        if (!CanMount()) return {};
        return disk.ReadOnly(Shop.App.ProgramFolder) ? "Read-only file system" : "";
    }
    void SetWritable(bool isWritable) const {
        using std::filesystem::perms;
        const perms writing = perms::owner_write;
        const auto how =
            isWritable ? std::filesystem::perm_options::add : std::filesystem::perm_options::remove;
        std::filesystem::permissions(Shop.App.ProgramFolder, writing, how);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Shop.App.ProgramFolder))
            std::filesystem::permissions(entry.path(), writing, how);
    }
    void TearDown() override {
        if (::geteuid() != 0) SetWritable(true); // otherwise it could not be removed
    }
};

TEST_P(ReadOnlyShop, ReadsAndSaysInOneSentenceWhatItCannotWrite) {
    Mounted disk;
    const std::string reason = MakeReadOnly(disk);
    if (reason.empty())
        GTEST_SKIP() << "Root writes everywhere, and a read-only mount is not permitted here.";
    const std::set<std::string> readers = {
        "LoadNames",  "Start",         "RestoreCompany", "FindMaterials",     "FindUsage",
        "ListUsage",  "FindCompanies", "ViewErrorLog",   "ListMaterialTypes", "ListApplicationMethods",
        "ListDeleted"};
    const auto before = Data();
    const bool isDone = Run();
    EXPECT_TRUE(Data() == before);
    if (readers.contains(GetParam().Name)) {
        EXPECT_TRUE(isDone);
        EXPECT_TRUE(Shop.Prompts.Shown.empty()) << testing::PrintToString(Shop.ShownTexts());
        return;
    }
    // StartInANewFolder cannot even create its folder, so it fails for another reason.
    ExpectOneFailure(std::string(GetParam().Name) == "StartInANewFolder" ? "No such file or directory"
                                                                         : reason);
    if (GetParam().Tells == Telling::ByAnswer) {
        EXPECT_FALSE(isDone);
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, ReadOnlyShop, testing::ValuesIn(ShopOperations()),
                         [](const auto& given) { return std::string(given.param.Name); });

} // namespace
} // namespace mact
