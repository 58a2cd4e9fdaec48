#include "app/backup.h"
#include "app/frm_config.h"
#include "app/frm_main.h"
#include "app/frm_restore.h"
#include "base/history.h"
#include "base/text.h"
#include "dialogs/link_label.h"
#include "dialogs/undo_button.h"
#include "lists/frm_list.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/undo_file.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "usage/usage_store.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <chrono>

namespace mact {
namespace {

using Contents = std::map<std::string, std::string>;

constexpr const char* VerdictOfTheSet =
    "DEC 2005: emission average 94.0 % of the allowance; nothing needs attention";

/// A year's use of two resins: 22,046 lb a month at 34 %, whose point value is 42.68 kg/Mg, and 2,204.6 lb at
/// 36 %, whose is 48.61; the allowance is 46. Those are 120 Mg and 12 Mg, 5,704.92 kg of 6,072 kg: 94.0 %.
///
/// Set 1 was made in November, set 2 in December, and set 3 on the same stick, which was pulled out early.
/// Then the company was renamed, a record was deleted, and the disk was damaged.
struct DamagedShop : OverviewShop {
    History Changes;
    std::filesystem::path November = ProgramFile("talvor_backupset_1");
    std::filesystem::path December = ProgramFile("talvor_backupset_2");
    std::filesystem::path Cut = ProgramFile("talvor_backupset_3");
    std::filesystem::path Kept = ProgramFile("talvor_backupset_4");
    Contents Damaged;

    DamagedShop() {
        App.Changes = &Changes;
        ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0",
                         "PR-2|resin|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        LoadAdditionalNames(App); // as the windows do, which creates the file
        UseUntil(1, 11);
        BackUp(November, 72);
        UseUntil(12, 12);
        BackUp(December, 48);
        MakeCutSet();
        SaveCompany(App, "Acme Yachts", "Port Ellery", 1);
        const auto renamed = ReadCompanies(App);
        Check(renamed && renamed->size() == 1);
        MakeCompanyCurrent(App, renamed->front());
        Check(!DeleteUsage(App, 24));
        Check(Changes.ToUndo({HistoryKind::Usage, 1}));
        Damage();
        Prompts.Shown.clear();
    }
    ~DamagedShop() { App.Changes = nullptr; }

    static void Check(bool isTrue) {
        if (!isTrue) qFatal("The test cannot be prepared");
    }
    void UseUntil(int first, int last) {
        std::vector<std::string> lines;
        for (int month = first; month <= last; ++month)
            for (const char* use : {"PR-1|%1|2005|22046|lbs", "PR-2|%1|2005|2204.6|lbs"})
                lines.push_back(QString::fromLatin1(use).arg(month).toStdString());
        ImportUsage(lines);
    }
    void BackUp(const std::filesystem::path& set, int hoursAgo) {
        Check(RunBackupToItsEnd(App) == set);
        SetTimes(set, hoursAgo);
    }
    static void SetTimes(const std::filesystem::path& set, int hoursAgo) {
        const auto now = std::filesystem::file_time_type::clock::now();
        for (const auto& entry : std::filesystem::directory_iterator(set))
            std::filesystem::last_write_time(entry.path(), now - std::chrono::hours(hoursAgo));
    }
    void MakeCutSet() const {
        std::filesystem::copy(December, Cut);
        std::filesystem::resize_file(Cut / "1_usage.talvor", 100); // of 32 bytes each
        SetTimes(Cut, 24);
    }
    void Damage() {
        const std::filesystem::path materials = DataFile("1_materials.talvor");
        std::filesystem::resize_file(materials, std::filesystem::file_size(materials) - 100);
        WriteContent(DataFile("1_usage.talvor"), std::string(700, '\xE5'));
        WriteContent(UndoFileOf(DataFile("1_usage.talvor")), "left over");
        Damaged = FilesIn(App.ProgramFolder / "data");
    }
    Contents Data() const { return FilesIn(App.ProgramFolder / "data"); }
};

QString Cell(const frmRestore& window, int row, int column) {
    const auto* const item = Named<QTableWidget>(window, "tbl_Sets").item(row, column);
    return item ? item->text() : QString();
}

QString Status(const frmRestore& window) {
    return Named<QLabel>(window, "lbl_Status").text();
}

/// As the owner reads the table: waits until the last set has been looked into.
void WaitForSets(const frmRestore& window, int count) {
    QTRY_COMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), count);
    QTRY_VERIFY(!Cell(window, count - 1, 5).isEmpty());
}

void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

/// The newest set is cut, which is asked about; the one below is complete.
void RestoreTheNewestCompleteSet(DamagedShop& shop, frmRestore& window) {
    QVERIFY(QTest::qWaitForWindowActive(&window));
    WaitForSets(window, 3);
    QCOMPARE(Cell(window, 0, 5), QStringLiteral("cut or incomplete"));
    QCOMPARE(Cell(window, 1, 5), QStringLiteral("complete"));
    QCOMPARE(Cell(window, 1, 3), QStringLiteral("2 materials, 24 usage records"));

    PressKey(Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY(Named<QCheckBox>(window, "chk_Confirm").isChecked());
    PressKey(Qt::Key_Return); // the question is answered with No
    QCOMPARE(Status(window), QStringLiteral("Nothing has been restored."));
    QCOMPARE(shop.Prompts.Shown.size(), std::size_t{1});
    QVERIFY(QString::fromStdString(shop.Prompts.LastText())
                .contains(QStringLiteral("The file \"1_usage.talvor\" ends within a record.")));
    QCOMPARE(shop.Data(), shop.Damaged);

    WaitForSets(window, 3);
    PressKey(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("tbl_Sets"));
    PressKey(Qt::Key_Down);
    QVERIFY(Named<QPlainTextEdit>(window, "txt_Details")
                .toPlainText()
                .startsWith(QString::fromStdString(PathText(shop.December))));
    PressKey(Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY(Named<QCheckBox>(window, "chk_Confirm").isChecked());
    PressKey(Qt::Key_Return);
    QCOMPARE(Status(window),
             QString::fromStdString("The data has been restored from " + PathText(shop.December) +
                                    ". What was there before is in " + PathText(shop.Kept) + "."));
    QCOMPARE(shop.Prompts.Shown.size(), std::size_t{1}); // a complete set is not asked about
}

void ExpectNothingToUndo(frmList& list) {
    QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 24);
    QVERIFY(!Named<UndoButton>(list, "cmd_Undo").isVisible());
}

} // namespace

class restore_story_test : public QObject {
    Q_OBJECT

private slots:
    void The_owner_of_a_damaged_folder_brings_the_newest_complete_set_back() {
        DamagedShop shop;
        frmMain window(shop.App);
        window.show();
        QCOMPARE(TextOf<QLabel>(window, "lbl_Company"),
                 std::string("Current company: Acme Yachts, Port Ellery"));
        QTest::qWait(100); // whatever the verdict makes of the damage
        QVERIFY(Named<LinkLabel>(window, "lbl_Verdict").text() != QLatin1String(VerdictOfTheSet));
        shop.Prompts.Shown.clear();

        InNextModal<frmConfig>([&](frmConfig& configuration) {
            InNextModal<frmRestore>([&](frmRestore& restore) { RestoreTheNewestCompleteSet(shop, restore); });
            Named<QPushButton>(configuration, "cmd_Restore").click();
        });
        Named<QPushButton>(window, "cmd_Config").click();

        QCOMPARE(TextOf<QLabel>(window, "lbl_Company"),
                 std::string("Current company: Acme Boats, Port Ellery"));
        QTRY_COMPARE(Named<LinkLabel>(window, "lbl_Verdict").text(), QLatin1String(VerdictOfTheSet));
        QCOMPARE(shop.Data(), FilesIn(shop.December)); // and so no undo file
        QCOMPARE(FilesIn(shop.Kept), shop.Damaged);
        for (const char* name : {"restore.mact.note", "data.mact.new", "data.mact.old", "data.replaced"})
            QVERIFY2(!std::filesystem::exists(shop.ProgramFile(name)), name);

        InNextModal<frmList>(ExpectNothingToUndo);
        Named<QPushButton>(window, "cmd_Usage").click();
    }
};
} // namespace mact

QTEST_MAIN(mact::restore_story_test)
#include "restore_story_test.moc"
