#include "base/text.h"
#include "materials/material_changes.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Sentences = std::vector<std::string>;

class MaterialChangesTest : public testing::Test, public TestProgram {
protected:
    const std::filesystem::path File = DataFile("1_materials.talvor");

    static MaterialRecord Live(std::int16_t number, const std::string& customId) {
        return {.MaterialId = number, .CustomId = customId, .Density = 9.2};
    }
    static MaterialRecord Deleted(std::int16_t number, const std::string& customId) {
        MaterialRecord material = Live(number, customId);
        material.Active = false;
        return material;
    }
    static std::string Slots(const std::vector<MaterialRecord>& materials) {
        std::string slots;
        for (const MaterialRecord& material : materials)
            slots += Pack(MaterialLayout, material);
        return slots;
    }
    void Write(const std::vector<MaterialRecord>& materials) const { WriteContent(File, Slots(materials)); }

    static Sentences SentencesOf(const Result<std::vector<Failure>>& refusals) {
        if (!refusals) return {"failed", SentenceOf(refusals.error())};
        Sentences sentences;
        for (const Failure& refusal : *refusals)
            sentences.push_back(SentenceOf(refusal));
        return sentences;
    }
    Sentences Undelete(const std::vector<MaterialRecord>& seen) {
        return SentencesOf(UndeleteMaterials(App, seen));
    }
    /// Each record as it was looked at, and what it is to become.
    using Pairs = std::vector<std::pair<MaterialRecord, MaterialRecord>>;
    /// What was refused: the record's number and why.
    Sentences Change(const Pairs& records, const Result<bool>& isUsed = false) {
        std::vector<MaterialChange> changes;
        for (const auto& [seen, record] : records)
            changes.push_back({record, seen});
        const Result<MaterialOutcome> outcome =
            ChangeMaterials(App, changes, [&](std::int16_t) { return isUsed; });
        if (!outcome) return {"failed", SentenceOf(outcome.error())};
        Sentences reasons;
        for (const RefusedChange& refused : outcome->Refused)
            reasons.push_back(std::to_string(changes[refused.Change].Record.MaterialId) + ": " +
                              refused.Reason);
        return reasons;
    }
    std::vector<int> DeletedNumbers() {
        const Result<std::vector<MaterialRecord>> deleted = ReadDeletedMaterials(App);
        EXPECT_TRUE(deleted);
        std::vector<int> numbers;
        for (const MaterialRecord& material : *deleted)
            numbers.push_back(material.MaterialId);
        return numbers;
    }
};

TEST_F(MaterialChangesTest, DeletedOnesAreListedAndNothingIsCreated) {
    EXPECT_EQ(DeletedNumbers(), std::vector<int>{});
    EXPECT_FALSE(std::filesystem::exists(File));
    Write({Live(1, "A"), Deleted(2, "B"), Live(3, "C"), Deleted(4, "D")});
    EXPECT_EQ(DeletedNumbers(), (std::vector<int>{2, 4}));
}

TEST_F(MaterialChangesTest, ADeletedOneThatIsNotInItsSlotIsNotListed) {
    Write({Deleted(2, "A"), Deleted(2, "B"), MaterialRecord{.Active = false}});
    EXPECT_EQ(DeletedNumbers(), std::vector<int>{2});
}

TEST_F(MaterialChangesTest, BringingBackWritesTheActiveMarkAlone) {
    // Leading blanks, a number that is none, and bytes after the fields, as an earlier version left them.
    std::string slot = Slots({Deleted(2, "  GC-1")});
    slot.replace(302, 8, Hex("01 00 00 00 00 00 F0 7F"));
    slot.replace(787, 3, "old");
    const std::string first = Slots({Live(1, "A")});
    const std::string last = Slots({Live(3, "C")});
    WriteContent(File, first + slot + last);
    const Result<std::vector<MaterialRecord>> seen = ReadDeletedMaterials(App);
    ASSERT_TRUE(seen && seen->size() == 1);
    EXPECT_EQ(Undelete(*seen), Sentences{});
    EXPECT_EQ(ContentOf(File), first + slot.replace(681, 2, Hex("FF FF")) + last);
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
}

TEST_F(MaterialChangesTest, ADeleteThroughTheStoreComesBackByteForByte) {
    Write({Live(1, "A"), Live(2, " B")});
    const std::string before = ContentOf(File);
    ASSERT_FALSE(DeleteMaterial(App, 2, [](std::int16_t) -> Result<bool> { return false; }));
    ASSERT_NE(ContentOf(File), before);
    EXPECT_EQ(Undelete({Deleted(2, " B")}), Sentences{});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialChangesTest, SeveralComeBackTogether) {
    Write({Deleted(1, "A"), Live(2, "B"), Deleted(3, "C"), Deleted(4, "D")});
    EXPECT_EQ(Undelete({Deleted(4, "D"), Deleted(1, "A"), Deleted(4, "D")}),
              Sentences{"Cannot bring back material 4: it would be changed twice at once."});
    EXPECT_EQ(Undelete({Deleted(4, "D"), Deleted(1, "A")}), Sentences{});
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "A"), Live(2, "B"), Deleted(3, "C"), Live(4, "D")}));
}

TEST_F(MaterialChangesTest, NoneComesBackIfOneIsRefused) {
    Write({Deleted(1, "A"), Live(2, "B"), Deleted(3, "b ")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Undelete({Deleted(1, "A"), Deleted(3, "b ")}),
              Sentences{"Cannot bring back material 3: material 2 has the same Material ID."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialChangesTest, OneThatIsLiveOrNotThereIsRefused) {
    Write({Live(1, "A")});
    EXPECT_EQ(Undelete({Deleted(1, "A"), Deleted(2, "B"), Deleted(0, ""), Deleted(-1, "")}),
              (Sentences{"Cannot bring back material 1: it is not deleted.",
                         "Cannot bring back material 2: it does not exist.",
                         "Cannot bring back material 0: it does not exist.",
                         "Cannot bring back material -1: it does not exist."}));
}

TEST_F(MaterialChangesTest, OneThatAnotherCopyHasChangedSinceItWasLookedAtIsRefused) {
    Write({Deleted(1, "A"), Deleted(2, "B")});
    const std::string before = ContentOf(File);
    MaterialRecord seen = Deleted(2, "B");
    seen.Density = 9.3;
    EXPECT_EQ(Undelete({Deleted(1, "A"), seen}),
              Sentences{"Cannot bring back material 2: it has changed since it was looked at."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialChangesTest, TwoOfTheSameMaterialIdDoNotComeBackTogether) {
    Write({Deleted(1, "gc-1"), Deleted(2, " GC-1")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Undelete({Deleted(1, "gc-1"), Deleted(2, " GC-1")}),
              Sentences{"Cannot bring back material 2: another of these records has the same Material ID."});
    EXPECT_EQ(ContentOf(File), before);
    EXPECT_EQ(Undelete({Deleted(2, " GC-1")}), Sentences{});
}

TEST_F(MaterialChangesTest, OneThatIsNotInItsSlotIsRefused) {
    Write({Live(1, "A"), Deleted(7, "B")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(
        Undelete({Deleted(2, "B")}),
        Sentences{"Cannot bring back material 2: the file is damaged: the record there has the number 7."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialChangesTest, OneWhoseFieldsAreCutShortIsRefused) {
    for (const std::size_t length : {1444U + 786U, 1444U + 787U}) {
        SCOPED_TRACE(length);
        Write({Live(1, "A"), Deleted(2, "B")});
        std::filesystem::resize_file(File, length);
        const std::string before = ContentOf(File);
        const Sentences refused = Undelete({Deleted(2, "B")});
        if (length == 1444 + 787) {
            EXPECT_EQ(refused, Sentences{});
            EXPECT_EQ(ContentOf(File), std::string(before).replace(1444 + 681, 2, Hex("FF FF")));
        } else {
            EXPECT_EQ(refused, Sentences{"Cannot bring back material 2: the file ends within it."});
            EXPECT_EQ(ContentOf(File), before);
        }
    }
}

TEST_F(MaterialChangesTest, AMarkThatIsNeitherLiveNorDeletedCountsAsDeleted) {
    std::string slot = Slots({Live(1, "A")});
    WriteContent(File, std::string(slot).replace(681, 2, Hex("07 00")));
    EXPECT_EQ(DeletedNumbers(), std::vector<int>{1});
    EXPECT_EQ(Undelete({Deleted(1, "A")}), Sentences{});
    EXPECT_EQ(ContentOf(File), slot);
}

TEST_F(MaterialChangesTest, AnEditIsTakenBack) {
    MaterialRecord edited = Live(1, "Z");
    edited.Comments = "edited";
    Write({edited, Live(2, "B")});
    EXPECT_EQ(Change({
                  {edited, Live(1, "A")}
    }),
              Sentences{});
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "A"), Live(2, "B")}));
}

TEST_F(MaterialChangesTest, AnEditIsNotTakenBackIfItsOldMaterialIdIsTakenByNow) {
    Write({Live(1, "Z"), Live(2, "A")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Change({
                  {Live(1, "Z"), Live(1, "A")}
    }),
              Sentences{"1: material 2 has the same Material ID"});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(MaterialChangesTest, TwoEditsThatSwappedMaterialIdsAreTakenBackTogether) {
    Write({Live(1, "B"), Live(2, "A")});
    EXPECT_EQ(Change({
                  {Live(1, "B"), Live(1, "A")},
                  {Live(2, "A"), Live(2, "B")}
    }),
              Sentences{});
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "A"), Live(2, "B")}));
}

TEST_F(MaterialChangesTest, AnAppendIsTakenBackUnlessUsageRefersToTheMaterial) {
    Write({Live(1, "A"), Live(2, "B")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Change(
                  {
                      {Live(2, "B"), Deleted(2, "B")}
    },
                  true),
              Sentences{"2: later usage refers to it"});
    EXPECT_EQ(ContentOf(File), before);
    EXPECT_EQ(Change({
                  {Live(2, "B"), Deleted(2, "B")}
    }),
              Sentences{});
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "A"), Deleted(2, "B")}));
}

TEST_F(MaterialChangesTest, ADeletedOneIsNotAskedForItsUsage) {
    Write({Deleted(1, "A")});
    EXPECT_EQ(Change(
                  {
                      {Deleted(1, "A"), Live(1, "A")}
    },
                  true),
              Sentences{});
}

TEST_F(MaterialChangesTest, AnAppendThatAnotherCopyHasDeletedSinceIsRefused) {
    Write({Deleted(1, "A")});
    EXPECT_EQ(Change({
                  {Live(1, "A"), Deleted(1, "A")}
    }),
              Sentences{"1: it has been deleted since"});
}

TEST_F(MaterialChangesTest, AFileThatCannotBeOpenedOrUsageThatCannotBeToldIsAFailure) {
    Write({Live(1, "A")});
    const Sentences unclear = Change(
        {
            {Live(1, "A"), Deleted(1, "A")}
    },
        Failure{.Reason = "Unreadable"});
    EXPECT_EQ(unclear, (Sentences{"failed", "Unreadable."}));
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "A")}));
    std::filesystem::remove(File);
    std::filesystem::create_directory(File);
    EXPECT_FALSE(UndeleteMaterials(App, {Deleted(1, "A")}));
    EXPECT_FALSE(ReadDeletedMaterials(App));
}

TEST_F(MaterialChangesTest, AFullFileOfDeletedOnesComesBackAtOnce) {
    std::vector<MaterialRecord> deleted;
    for (int number = 1; number <= 32767; ++number)
        deleted.push_back(Deleted(static_cast<std::int16_t>(number), std::to_string(number)));
    Write(deleted);
    EXPECT_EQ(Undelete(deleted), Sentences{});
    EXPECT_EQ(DeletedNumbers(), std::vector<int>{});
    EXPECT_EQ(std::filesystem::file_size(File), std::uintmax_t{32767} * 1444);
}

} // namespace
} // namespace mact
