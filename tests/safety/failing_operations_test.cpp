#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "tests/safety/shop_operations.h"
#include "tests/support/failing_files.h"
#include "tests/support/folder_content.h"
#include "tests/support/sample_shop.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Contents = std::map<std::string, std::string>;

/// Everything that an operation could harm.
struct Place {
    Contents Data;    ///< the files of the data folder
    Contents Written; ///< the files of the program folder
};

/// A file's content; null if there is no such file.
const std::string* ContentIn(const Contents& files, const std::string& name) {
    const auto found = files.find(name);
    return found == files.end() ? nullptr : &found->second;
}

bool AreEqual(const std::string* left, const std::string* right) {
    return left && right ? *left == *right : left == right;
}

/// The number in "what was written of record 3 could not be taken back"; 0 if the message has none.
int RecordInDoubt(const std::string& message) {
    const std::string before = "; what was written of record ";
    const std::size_t at = message.find(before);
    return at == std::string::npos ? 0 : std::stoi(message.substr(at + before.size()));
}

class FailingOperation : public testing::TestWithParam<ShopOperation> {
protected:
    FailingOperation() {
        WriteContent(Shop.ProgramFile(NewMaterialsFile), NewMaterials());
        WriteContent(Shop.ProgramFile(NewUsageFile), NewUsage());
        for (const char* written : {ExportedFile, "report.htm", "report2.htm", "report3.htm", "report4.htm",
                                    "report5.htm", "backup.bat"})
            WriteContent(Shop.ProgramFile(written), "of the run before");
        GiveUsageOfTheUnusedMaterialToTheFirst();
        DeleteSomeRecords(Shop.App);
        m_before = Look();
    }

    void GiveUsageOfTheUnusedMaterialToTheFirst() const {
        std::string usage = ContentOf(Shop.DataFile("1_usage.talvor"));
        for (std::size_t at = 0; at < usage.size(); at += 32)
            if (usage[at + 2] == UnusedMaterial) usage[at + 2] = 1;
        WriteContent(Shop.DataFile("1_usage.talvor"), usage);
    }

    Place Look() const { return {FilesIn(Shop.ProgramFile("data")), FilesIn(Shop.App.ProgramFolder)}; }

    void PutBack() {
        const auto put = [](const std::filesystem::path& folder, const Contents& files) {
            const Contents present = FilesIn(folder);
            for (const auto& [name, content] : present)
                if (!files.contains(name)) std::filesystem::remove(folder / name);
            for (const auto& [name, content] : files)
                if (!AreEqual(&content, ContentIn(present, name))) WriteContent(folder / name, content);
        };
        put(Shop.ProgramFile("data"), m_before.Data);
        put(Shop.App.ProgramFolder, m_before.Written);
        std::filesystem::remove_all(Shop.ProgramFile("talvor_backupset_1"));
        std::filesystem::remove_all(Shop.ProgramFile("talvor_backupset_2"));
        Shop.Settings.Values[{"BACKUP", "BK_VOLUME"}] = "1";
        Shop.Prompts.Shown.clear();
    }

    /// Runs the operation on a disk with this fault. False if it reported failure.
    bool Run(Fault fault) {
        Shop.Prompts.Shown.clear();
        m_files.Start(fault);
        AppContext app{Shop.Prompts,  Shop.Settings, Shop.Programs,          Shop.Dialogs,
                       Shop.Calendar, m_files,       Shop.App.ProgramFolder, 1};
        return GetParam().Run(app);
    }

    void ExpectOneFailure(std::string_view reason) const {
        ASSERT_EQ(Shop.Prompts.Shown.size(), 1U) << testing::PrintToString(Shop.ShownTexts());
        const Prompt& shown = Shop.Prompts.Shown.front();
        EXPECT_EQ(shown.Kind, PromptKind::Failure) << shown.Text;
        EXPECT_TRUE(shown.Text.starts_with("Cannot ")) << shown.Text;
        EXPECT_TRUE(shown.Text.ends_with('.')) << shown.Text;
        EXPECT_EQ(shown.Text.find('\n'), std::string::npos) << shown.Text;
        EXPECT_NE(shown.Text.find(PathText(Shop.App.ProgramFolder)), std::string::npos) << shown.Text;
        EXPECT_NE(shown.Text.find("\": " + std::string(reason)), std::string::npos) << shown.Text;
    }

    /// Each slot is as before or as after a run without a fault; none is missing and none is extra.
    void ExpectOldOrNewSlots(const std::string& name, std::size_t slotLength, const std::string& after,
                             int inDoubt) const {
        const std::string before = m_before.Data.contains(name) ? m_before.Data.at(name) : std::string{};
        const std::string done = m_done.Data.contains(name) ? m_done.Data.at(name) : before;
        if (inDoubt == 0 && !m_isGone) {
            EXPECT_EQ(after.size() % slotLength, 0U);
        }
        EXPECT_GE(after.size(), before.size());
        EXPECT_LE(after.size(), done.size());
        for (std::size_t at = 0; at < after.size(); at += slotLength) {
            if (static_cast<int>(at / slotLength) + 1 == inDoubt) continue;
            const std::string slot = after.substr(at, slotLength);
            const bool isOld = at < before.size() && slot == before.substr(at, slotLength);
            EXPECT_TRUE(isOld || slot == done.substr(at, slot.size())) << "slot " << at / slotLength + 1;
        }
    }

    void ExpectNothingHarmed(int inDoubt) const {
        const Place after = Look();
        for (const auto& [name, content] : after.Data) {
            SCOPED_TRACE(name);
            const std::size_t slotLength = SlotLengthOf(name);
            if (name.ends_with(".mact.undo")) {
                // It stays to take back what could not be taken back, or if the disk lets nothing be removed.
                EXPECT_TRUE(inDoubt != 0 || m_isGone);
            } else if (slotLength != 0) {
                ExpectOldOrNewSlots(name, slotLength, content, inDoubt);
            } else {
                ExpectOldOrNew(name, content, m_before.Data, m_done.Data);
            }
        }
        for (const auto& [name, content] : m_before.Data)
            EXPECT_TRUE(after.Data.contains(name)) << name;
        for (const auto& [name, content] : after.Written) {
            SCOPED_TRACE(name);
            if (name.ends_with("_errors.txt")) continue; // a log is started anew
            ExpectOldOrNew(name, content, m_before.Written, m_done.Written);
        }
    }
    /// The content is the old or the new one, so a temporary file is neither. A disk that is gone lets none
    /// be removed.
    void ExpectOldOrNew(const std::string& name, const std::string& after, const Contents& before,
                        const Contents& done) const {
        if (name.ends_with(".tmp") && m_isGone) return;
        EXPECT_TRUE(AreEqual(&after, ContentIn(before, name)) || AreEqual(&after, ContentIn(done, name)));
    }

    /// An operation that reported failure has changed no record.
    void ExpectTruth(bool isDone, int inDoubt) const {
        if (GetParam().Tells == Telling::ByMessage) return;
        EXPECT_FALSE(isDone);
        if (inDoubt != 0) return;
        for (const auto& [name, content] : Look().Data)
            EXPECT_TRUE(SlotLengthOf(name) == 0 || content == m_before.Data.at(name)) << name;
    }

    void ExpectNoLock() const {
        OsFiles files;
        for (const auto& folder : {Shop.ProgramFile("data"), Shop.App.ProgramFolder})
            for (const auto& [name, content] : FilesIn(folder)) {
                const auto file = files.Open(folder / name, OpenMode::Update);
                ASSERT_TRUE(file);
                EXPECT_TRUE((*file)->Lock());
            }
    }

    /// Everything that a run without a fault wrote is on the disk and survives a power cut.
    void ExpectOnDisk() const {
        EXPECT_TRUE(m_files.Unflushed().empty()) << testing::PrintToString(m_files.Unflushed());
    }
    /// No file was renamed before it was flushed, so a power cut never takes away a file's content.
    void ExpectNoneRenamedUnflushed() const {
        EXPECT_TRUE(m_files.RenamedUnflushed().empty()) << testing::PrintToString(m_files.RenamedUnflushed());
    }

    /// Compares only what does not depend on how often the operation was tried before.
    void ExpectDone() const {
        const Place after = Look();
        for (const auto& [name, content] : m_done.Data)
            EXPECT_TRUE(AreEqual(&content, ContentIn(after.Data, name))) << name;
    }

    void CheckFault(Fault fault) {
        m_isGone = fault.Kind == FaultKind::IsGone;
        PutBack();
        const bool isDone = Run(fault);
        m_isInAWrite = m_files.HasFailedInAWrite();
        if (m_files.NotRemoved().extension() == ".undo" && Shop.Prompts.Shown.empty()) {
            EXPECT_TRUE(isDone); // the undo file is void: that it stays is nothing to be told
            ExpectDone();
            return;
        }
        ExpectOneFailure(fault.Reason);
        if (HasFatalFailure()) return;
        const int inDoubt = RecordInDoubt(Shop.Prompts.LastText());
        // A record is in doubt only if the disk took part of it and nothing after that.
        if (fault.Kind == FaultKind::Once || fault.Kind == FaultKind::HalfWritten) {
            EXPECT_EQ(inDoubt, 0);
        }
        ExpectNothingHarmed(inDoubt);
        ExpectTruth(isDone, inDoubt);
        ExpectNoLock();
        ExpectNoneRenamedUnflushed();

        // A deletion that could not be taken back, nor its undo file be kept, is done: repeating it is
        // refused.
        const bool isRepeated = Run({});
        EXPECT_TRUE(isRepeated || inDoubt != 0);
        ExpectNoneRenamedUnflushed();
        for (const Prompt& shown : Shop.Prompts.Shown)
            EXPECT_EQ(shown.Kind, PromptKind::Information) << shown.Text;
        // After an append that could not be taken back, repeating it adds another record.
        if (!m_isGone) ExpectDone();
        for (const auto& [name, content] : Look().Data)
            EXPECT_FALSE(name.ends_with(".mact.undo")) << name;
    }

    SampleShop Shop;
    FailingFiles m_files;
    bool m_isInAWrite = false; ///< the fault happened in a write
    bool m_isGone = false;     ///< the disk is gone: nothing can be cut off or removed any more
    Place m_before;
    Place m_done;
};

TEST_P(FailingOperation, HarmsNothingSaysSoOnceAndCanBeRepeated) {
    PutBack();
    ASSERT_TRUE(Run({}));
    ExpectOnDisk();
    ExpectNoneRenamedUnflushed();
    constexpr std::string_view reasons[] = {DiskIsFull, DiskIsDamaged, NotPermitted};
    const int operations = m_files.Count();
    ASSERT_GT(operations, 0);
    m_done = Look();
    for (int at = 1; at <= operations; ++at) {
        SCOPED_TRACE("operation " + std::to_string(at) + " of " + std::to_string(operations));
        std::vector<FaultKind> kinds = {FaultKind::Once, FaultKind::IsFull, FaultKind::IsGone};
        for (std::size_t index = 0; index < kinds.size(); ++index) {
            SCOPED_TRACE("kind " + std::to_string(static_cast<int>(kinds[index])));
            // Each operation fails for each reason, and the reasons take turns over the kinds of fault.
            const std::string_view reason = reasons[(static_cast<std::size_t>(at) + index) % 3];
            CheckFault({at, kinds[index], reason});
            if (HasFailure()) return;
            if (index == 0 && m_isInAWrite)
                kinds.insert(kinds.end(), {FaultKind::HalfWritten, FaultKind::FillsUp});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FailingOperation, testing::ValuesIn(ShopOperations()),
                         [](const auto& given) { return std::string(given.param.Name); });

} // namespace
} // namespace mact
