#include "materials/material_changes.h"
#include "store/companies.h"
#include "tests/transfer/transfer_fixture.h"
#include "usage/usage_changes.h"

namespace mact {
namespace {

constexpr HistoryOf OfMaterials{HistoryKind::Materials, 1};
constexpr HistoryOf OfUsage{HistoryKind::Usage, 1};
constexpr HistoryOf OfCompanies{.Kind = HistoryKind::Companies};

using Reasons = std::vector<std::string>;

/// What stores note of what they did, taken back and done again.
class TakingBack : public TransferTest {
protected:
    History Changes;
    bool IsUsed = false;

    TakingBack() {
        AddMaterial("PR-101");
        AddMaterial("GC-2");
        Use(1, "2/2005", 10);
        App.Changes = Faulty.Changes = &Changes;
    }
    void Use(std::int16_t materialId, const std::string& period, double quantity, std::int16_t number = 0) {
        EXPECT_FALSE(SaveUsage(App, {.UsageId = number,
                                     .MaterialId = materialId,
                                     .Period = period,
                                     .Quantity = quantity,
                                     .Unit = UnitLbs}));
    }
    std::string ToUndo(const HistoryOf& whose) const {
        const HistoryStep* const step = Changes.ToUndo(whose);
        return step ? step->Name : "";
    }
    /// The reasons against it.
    Reasons Undo(const HistoryOf& whose) {
        return Changes.Undo(whose, App, [this](std::int16_t) -> Result<bool> { return IsUsed; })->Reasons;
    }
    Reasons Redo(const HistoryOf& whose) {
        return Changes.Redo(whose, App, [this](std::int16_t) -> Result<bool> { return IsUsed; })->Reasons;
    }
    /// Number, month and quantity of each record; deleted ones are in brackets.
    std::string UsageText() {
        std::string text;
        const auto add = [&](const UsageRecord& usage) {
            const std::string record = std::to_string(usage.UsageId) + ':' + usage.Period + '=' +
                                       std::to_string(static_cast<int>(usage.Quantity));
            text += (text.empty() ? "" : " ") + (usage.Active ? record : '(' + record + ')');
        };
        EXPECT_TRUE(VisitUsage(App, add));
        return text;
    }
    /// The Material IDs; deleted ones are in brackets.
    std::string MaterialText() {
        std::string text;
        const auto add = [&](const MaterialRecord& material) {
            text += (text.empty() ? "" : " ") +
                    (material.Active ? material.CustomId : '(' + material.CustomId + ')');
        };
        EXPECT_TRUE(VisitMaterials(App, add));
        return text;
    }
};

TEST_F(TakingBack, ADeleteOfUsageWritesTheOldRecordIntoItsSlot) {
    const std::string before = ContentOf(UsageData());
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(ToUndo(OfUsage), "delete PR-101 (2/2005)");
    EXPECT_FALSE(Changes.ToUndo(OfUsage)->HasAdded);
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_TRUE(ContentOf(UsageData()) == before);
    EXPECT_EQ(Redo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "(1:2/2005=10)");
}

TEST_F(TakingBack, AnEditOfUsageWritesTheOldRecordIntoItsSlot) {
    const std::string before = ContentOf(UsageData());
    Use(2, "3/2005", 55, 1);
    EXPECT_EQ(ToUndo(OfUsage), "edit GC-2 (3/2005)");
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_TRUE(ContentOf(UsageData()) == before);
    EXPECT_EQ(Redo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "1:3/2005=55");
}

TEST_F(TakingBack, AnAddedUsageIsMarkedAsDeletedAndKeepsItsNumber) {
    Use(2, "2/2005", 7);
    EXPECT_EQ(ToUndo(OfUsage), "add GC-2 (2/2005)");
    EXPECT_TRUE(Changes.ToUndo(OfUsage)->HasAdded);
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "1:2/2005=10 (2:2/2005=7)");
    Use(2, "2/2005", 8);
    EXPECT_EQ(UsageText(), "1:2/2005=10 (2:2/2005=7) 3:2/2005=8");
}

TEST_F(TakingBack, StepsAreTakenBackOneAfterTheOther) {
    Use(1, "2/2005", 20, 1);
    Use(1, "2/2005", 30, 1);
    EXPECT_FALSE(DeleteUsage(App, 1));
    for (const char* text : {"1:2/2005=30", "1:2/2005=20", "1:2/2005=10"}) {
        EXPECT_EQ(Undo(OfUsage), Reasons{});
        EXPECT_EQ(UsageText(), text);
    }
    EXPECT_EQ(ToUndo(OfUsage), "");
}

TEST_F(TakingBack, IsRefusedIfAnotherCopyHasChangedTheRecordSinceAndThenLeftOut) {
    Use(2, "2/2005", 7); // record 2
    Use(1, "2/2005", 20, 1);
    Use(1, "2/2005", 30, 1);
    App.Changes = nullptr; // another copy
    Use(1, "2/2005", 31, 1);
    EXPECT_EQ(Undo(OfUsage), Reasons{"it has changed since it was looked at"});
    EXPECT_EQ(UsageText(), "1:2/2005=31 2:2/2005=7");
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(Undo(OfUsage), Reasons{"it has been deleted since"});
    EXPECT_EQ(Undo(OfUsage), Reasons{}); // the addition of the other record
    EXPECT_EQ(UsageText(), "(1:2/2005=31) (2:2/2005=7)");
}

TEST_F(TakingBack, ADeleteThatAnotherCopyHasTakenBackIsLeftOut) {
    EXPECT_FALSE(DeleteUsage(App, 1));
    UsageRecord deleted{.UsageId = 1, .MaterialId = 1, .Period = "2/2005", .Quantity = 10, .Unit = UnitLbs};
    deleted.Active = false;
    EXPECT_TRUE(UndeleteUsage(App, {deleted})->empty());
    EXPECT_EQ(Undo(OfUsage), Reasons{"it is not deleted"});
    EXPECT_EQ(ToUndo(OfUsage), "");
}

TEST_F(TakingBack, ADeleteIsNotTakenBackIfALiveRecordOfTheMaterialAndMonthExistsByNow) {
    EXPECT_FALSE(DeleteUsage(App, 1));
    App.Changes = nullptr;
    Use(1, "2/2005", 11);
    EXPECT_EQ(Undo(OfUsage), Reasons{"usage record 2 is of the same material and month"});
    EXPECT_EQ(UsageText(), "(1:2/2005=10) 2:2/2005=11");
}

TEST_F(TakingBack, ASheetIsTakenBackAsAWhole) {
    const std::string before = ContentOf(UsageData());
    UsageRecord edited = Usage()[0];
    edited.Quantity = 12;
    UsageOutcome outcome;
    EXPECT_FALSE(SaveUsageTogether(
        App,
        {
            {.Record = edited,                                                                .AsRead = Usage()[0]},
            {.Record = {.MaterialId = 2, .Period = "2/2005", .Quantity = 7, .Unit = UnitLbs}, .AsRead = {}        }
    },
        outcome));
    EXPECT_EQ(ToUndo(OfUsage), "sheet of 2/2005 (2 records)");
    EXPECT_TRUE(Changes.ToUndo(OfUsage)->HasAdded);
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "1:2/2005=10 (2:2/2005=7)");
    EXPECT_TRUE(ContentOf(UsageData()).substr(0, before.size()) == before);
    EXPECT_EQ(Redo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "1:2/2005=12 2:2/2005=7");
}

TEST_F(TakingBack, OfASheetNothingIsTakenBackIfOneRecordHasChanged) {
    UsageOutcome outcome;
    std::vector<UsageChange> changes;
    for (const std::int16_t material : {std::int16_t{1}, std::int16_t{2}})
        changes.emplace_back().Record = {.MaterialId = material, .Period = "3/2005", .Unit = UnitLbs};
    EXPECT_FALSE(SaveUsageTogether(App, changes, outcome));
    App.Changes = nullptr;
    Use(2, "3/2005", 1, 3);
    EXPECT_EQ(Undo(OfUsage), Reasons{"usage record 3: it has changed since it was looked at"});
    EXPECT_EQ(UsageText(), "1:2/2005=10 2:3/2005=0 3:3/2005=1");
}

TEST_F(TakingBack, AnImportOfUsageIsTakenBackAsAWholeAndTheRightOneMade) {
    ImportUsage("PR-101|3|2005|1|lbs\r\nGC-2|3|2005|2|lbs\r\nnonsense\r\n");
    EXPECT_EQ(ToUndo(OfUsage), "import \"source.txt\" (2 records)");
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_EQ(UsageText(), "1:2/2005=10 (2:3/2005=1) (3:3/2005=2)");
    ImportUsage("PR-101|3|2005|5|lbs\r\n");
    EXPECT_EQ(Errors, 0); // what was taken back blocks no line
    EXPECT_EQ(UsageText(), "1:2/2005=10 (2:3/2005=1) (3:3/2005=2) 4:3/2005=5");
}

TEST_F(TakingBack, AnImportThatStoredNothingIsNotNoted) {
    ImportUsage("nonsense\r\n");
    EXPECT_EQ(ToUndo(OfUsage), "");
}

TEST_F(TakingBack, ADeleteOrEditOfAMaterialWritesTheOldRecordIntoItsSlot) {
    const std::string before = ContentOf(MaterialData());
    EXPECT_FALSE(DeleteMaterial(App, 2, [](std::int16_t) -> Result<bool> { return false; }));
    EXPECT_EQ(ToUndo(OfMaterials), "delete GC-2");
    IsUsed = true; // does not matter
    EXPECT_EQ(Undo(OfMaterials), Reasons{});
    EXPECT_TRUE(ContentOf(MaterialData()) == before);
    EXPECT_FALSE(SaveMaterial(App, {.CustomId = "GC-3", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"},
                              std::int16_t{2}));
    EXPECT_EQ(ToUndo(OfMaterials), "edit GC-3");
    EXPECT_EQ(Undo(OfMaterials), Reasons{});
    EXPECT_TRUE(ContentOf(MaterialData()) == before);
}

TEST_F(TakingBack, AnAddedMaterialStaysIfLaterUsageRefersToIt) {
    EXPECT_FALSE(
        SaveMaterial(App, {.CustomId = "GC-3", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}));
    EXPECT_EQ(ToUndo(OfMaterials), "add GC-3");
    IsUsed = true;
    EXPECT_EQ(Undo(OfMaterials), Reasons{"later usage refers to it"});
    EXPECT_EQ(MaterialText(), "PR-101 GC-2 GC-3");
    IsUsed = false;
    EXPECT_EQ(Undo(OfMaterials), Reasons{});
    EXPECT_EQ(MaterialText(), "PR-101 GC-2 (GC-3)");
}

TEST_F(TakingBack, ADeletedMaterialStaysDeletedIfALiveOneHasItsMaterialId) {
    EXPECT_FALSE(DeleteMaterial(App, 2, [](std::int16_t) -> Result<bool> { return false; }));
    App.Changes = nullptr;
    AddMaterial("gc-2");
    EXPECT_EQ(Undo(OfMaterials), Reasons{"material 3 has the same Material ID"});
    EXPECT_EQ(MaterialText(), "PR-101 (GC-2) gc-2");
}

TEST_F(TakingBack, AnImportOfMaterialsIsTakenBackAsAWhole) {
    ImportMaterials(GoodMaterial("GC-8") + GoodMaterial("GC-9"));
    ASSERT_EQ(Errors, 0);
    EXPECT_EQ(ToUndo(OfMaterials), "import \"source.txt\" (2 records)");
    EXPECT_EQ(Undo(OfMaterials), Reasons{});
    EXPECT_EQ(MaterialText(), "PR-101 GC-2 (GC-8) (GC-9)");
    EXPECT_EQ(Redo(OfMaterials), Reasons{});
    EXPECT_EQ(MaterialText(), "PR-101 GC-2 GC-8 GC-9");
}

TEST_F(TakingBack, AnEditOfACompanyIsTakenBackAndAnAddedOneUnlessItIsInUse) {
    EXPECT_TRUE(StoreCompany(App, {.CompanyName = "Acme", .CompanyLocation = "Dock 1"}));
    EXPECT_EQ(ToUndo(OfCompanies), "add Acme");
    EXPECT_TRUE(StoreCompany(App, {.CompanyId = 1, .CompanyName = "Ocme", .CompanyLocation = "Dock 1"}));
    EXPECT_EQ(ToUndo(OfCompanies), "edit Ocme");
    EXPECT_EQ(Undo(OfCompanies), Reasons{});
    ASSERT_EQ(ReadCompanies(App)->size(), 1U);
    EXPECT_EQ(ReadCompanies(App)->front().CompanyName, "Acme");
    EXPECT_EQ(Undo(OfCompanies), Reasons{"it has materials or usage by now"}); // company 1's
    EXPECT_TRUE(StoreCompany(App, {.CompanyName = "Bay", .CompanyLocation = "Dock 2"}));
    IsUsed = true;
    EXPECT_EQ(Undo(OfCompanies), Reasons{"it is the current company"});
    IsUsed = false;
    EXPECT_EQ(Undo(OfCompanies), Reasons{});
    EXPECT_EQ(ReadCompanies(App)->size(), 1U);
}

TEST_F(TakingBack, WithoutAHistoryNothingIsNotedAndNothingReadForIt) {
    App.Changes = nullptr;
    Use(1, "2/2005", 20, 1);
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(ToUndo(OfUsage), "");
}

TEST_F(TakingBack, AFullFileOfImportedUsageIsTakenBackAtOnce) {
    std::string materials;
    for (int number = 3; number <= 400; ++number)
        materials += GoodMaterial("M-" + std::to_string(number));
    ImportMaterials(materials);
    std::string lines;
    for (int material = 3; material <= 400; ++material)
        for (int month = 0; month < 82; ++month)
            lines += "M-" + std::to_string(material) + '|' + std::to_string(month % 12 + 1) + '|' +
                     std::to_string(2000 + month / 12) + "|1|lbs\r\n";
    ImportUsage(lines); // 398 materials in 82 months: 32,636
    EXPECT_EQ(Errors, 0);
    EXPECT_EQ(ToUndo(OfUsage), "import \"source.txt\" (32636 records)");
    EXPECT_EQ(Undo(OfUsage), Reasons{});
    EXPECT_EQ(ReadUsage(App)->size(), 1U);
    EXPECT_EQ(Redo(OfUsage), Reasons{});
    EXPECT_EQ(ReadUsage(App)->size(), 32637U);
}

} // namespace
} // namespace mact
