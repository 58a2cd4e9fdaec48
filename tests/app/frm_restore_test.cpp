#include "app/backup.h"
#include "app/frm_config.h"
#include "app/frm_restore.h"
#include "base/text.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "usage/usage_store.h"

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <chrono>

namespace mact {
namespace {

/// Set 1 has one company, set 2 a second one and a usage record; the data has a third.
struct RestoreProgram : TestProgram {
    std::filesystem::path First = ProgramFile("talvor_backupset_1");
    std::filesystem::path Second = ProgramFile("talvor_backupset_2");

    RestoreProgram() {
        Check(static_cast<bool>(CreateDefaultHapContents(App)));
        AddAndBackUp("Acme");
        Check(!SaveUsage(App, {.MaterialId = 1, .Period = "1/2005", .Quantity = 5, .Unit = 2}));
        AddAndBackUp("Beta");
        Check(static_cast<bool>(AddNewCompany(App, "Gamma", "Dock")));
        const auto now = std::filesystem::file_time_type::clock::now();
        SetTimes(First, now - std::chrono::hours(48));
        SetTimes(Second, now - std::chrono::hours(24));
    }
    void AddAndBackUp(const char* name) {
        Check(static_cast<bool>(AddNewCompany(App, name, "Dock")));
        Check(RunBackupToItsEnd(App).has_value());
    }
    static void Check(bool isTrue) {
        if (!isTrue) qFatal("The test cannot be prepared");
    }
    static void SetTimes(const std::filesystem::path& set, std::filesystem::file_time_type time) {
        for (const auto& entry : std::filesystem::directory_iterator(set))
            std::filesystem::last_write_time(entry.path(), time);
    }
    std::map<std::string, std::string> Data() const { return FilesIn(App.ProgramFolder / "data"); }
    /// Shows the window once every set is described.
    void Show(const std::function<void(frmRestore&)>& act) {
        InNextModal<frmRestore>([&](frmRestore& window) {
            WaitForSets(window);
            act(window);
        });
        ShowRestore(App, nullptr);
    }
    static QString Cell(const frmRestore& window, int row, int column) {
        const auto& table = Named<QTableWidget>(window, "tbl_Sets");
        return table.item(row, column) ? table.item(row, column)->text() : QString();
    }
    static void WaitForSets(const frmRestore& window) {
        const auto& table = Named<QTableWidget>(window, "tbl_Sets");
        const auto areDescribed = [&] {
            for (int row = 0; row < table.rowCount(); ++row)
                if (Cell(window, row, 5).isEmpty()) return false;
            return true;
        };
        for (int turn = 0; turn < 10; ++turn) // painting, finding
            QCoreApplication::processEvents();
        while (!areDescribed())
            QCoreApplication::processEvents();
    }
};

QString Status(const frmRestore& window) {
    return Named<QLabel>(window, "lbl_Status").text();
}
QString Details(const frmRestore& window) {
    return Named<QPlainTextEdit>(window, "txt_Details").toPlainText();
}
void Choose(const frmRestore& window, int row) {
    Named<QTableWidget>(window, "tbl_Sets").selectRow(row);
}
void Tick(const frmRestore& window) {
    Named<QCheckBox>(window, "chk_Confirm").setChecked(true);
}
void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}
bool IsEnabled(const QWidget& window, const char* control) {
    return Named<QWidget>(window, control).isEnabled();
}
QString Shown(const std::filesystem::path& path) {
    return QString::fromStdString(PathText(path));
}

} // namespace

class frm_restore_test : public QObject {
    Q_OBJECT

private slots:
    void Lists_the_sets_newest_first_with_what_is_in_them() {
        RestoreProgram program;
        program.Show([&](frmRestore& window) {
            QCOMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), 2);
            QCOMPARE(program.Cell(window, 0, 0), QStringLiteral("2"));
            QCOMPARE(program.Cell(window, 1, 0), QStringLiteral("1"));
            QCOMPARE(program.Cell(window, 0, 2), QStringLiteral("Acme; Beta"));
            QCOMPARE(program.Cell(window, 0, 3), QStringLiteral("0 materials, 1 usage record"));
            QCOMPARE(program.Cell(window, 0, 4), QStringLiteral("1 finding")); // usage without its material
            QCOMPARE(program.Cell(window, 0, 5), QStringLiteral("complete"));
            QCOMPARE(program.Cell(window, 1, 2), QStringLiteral("Acme"));
            QCOMPARE(program.Cell(window, 1, 3), QStringLiteral("0 materials, 0 usage records"));
            QCOMPARE(program.Cell(window, 1, 4), QStringLiteral("no findings"));
            QCOMPARE(program.Cell(window, 0, 1).size(), 16);
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void In_large_letters_every_heading_is_whole() {
        RestoreProgram program;
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSize(20);
        QApplication::setFont(large);
        program.Show([](frmRestore& window) {
            window.resize(window.minimumSizeHint());
            QCoreApplication::processEvents();
            auto& header = *Named<QTableWidget>(window, "tbl_Sets").horizontalHeader();
            for (int column = 0; column < header.count(); ++column)
                QVERIFY(header.sectionSize(column) >= header.sectionSizeHint(column));
        });
        QApplication::setFont(before);
    }

    void Says_what_is_wrong_with_the_chosen_set() {
        RestoreProgram program;
        WriteContent(program.First / "incomplete.txt", "The file \"1_usage.talvor\" is missing.\r\n");
        program.Show([&](frmRestore& window) {
            QVERIFY(Details(window).startsWith(Shown(program.Second) + u'\n'));
            QVERIFY(Details(window).contains(QStringLiteral("What the check finds in it:\n1_usage.talvor")));
            Choose(window, 1);
            QCOMPARE(program.Cell(window, 1, 5), QStringLiteral("cut or incomplete"));
            QCOMPARE(Details(window),
                     Shown(program.First) +
                         QStringLiteral("\n\nThe set is cut or incomplete:\nNot every file could be copied "
                                        "into it.\nThe file \"1_usage.talvor\" is missing."));
        });
    }

    void Restores_only_what_has_been_ticked() {
        RestoreProgram program;
        program.Show([&](frmRestore& window) {
            QVERIFY(!IsEnabled(window, "cmd_Restore"));
            QVERIFY(Named<QPushButton>(window, "cmd_Close").isDefault());
            Tick(window);
            QVERIFY(IsEnabled(window, "cmd_Restore"));
            QVERIFY(Named<QPushButton>(window, "cmd_Restore").isDefault());
            Choose(window, 1);
            QVERIFY(!Named<QCheckBox>(window, "chk_Confirm").isChecked());
            QVERIFY(!IsEnabled(window, "cmd_Restore"));
        });
    }

    void Restores_the_chosen_set_and_says_where_the_earlier_data_is() {
        RestoreProgram program;
        const auto before = program.Data();
        program.Show([&](frmRestore& window) {
            Choose(window, 1);
            Tick(window);
            Press(window, "cmd_Restore");
            QCOMPARE(Status(window),
                     QStringLiteral("The data has been restored from %1. What was there "
                                    "before is in %2.")
                         .arg(Shown(program.First), Shown(program.ProgramFile("talvor_backupset_3"))));
            RestoreProgram::WaitForSets(window);
            QCOMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), 3);
            QVERIFY(!Named<QCheckBox>(window, "chk_Confirm").isChecked());
        });
        QCOMPARE(program.Data(), FilesIn(program.First));
        QCOMPARE(FilesIn(program.ProgramFile("talvor_backupset_3")), before);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void An_incomplete_set_is_asked_about_and_No_leaves_everything_as_it_was() {
        RestoreProgram program;
        WriteContent(program.Second / "incomplete.txt", "The file \"9_usage.talvor\" is missing.\r\n");
        const auto before = program.Data();
        program.Prompts.Answers = {PromptAnswer::No, PromptAnswer::Yes};
        program.Show([&](frmRestore& window) {
            Tick(window);
            Press(window, "cmd_Restore");
            QCOMPARE(Status(window), QStringLiteral("Nothing has been restored."));
            QCOMPARE(program.Data(), before);
            QCOMPARE(program.Prompts.LastText(),
                     std::string("The backup set is cut or incomplete:\r\n\r\n- Not every file could be "
                                 "copied into it.\r\n- The file \"9_usage.talvor\" is missing.\r\n\r\nDo you "
                                 "want to restore what is in it all the same?"));
            RestoreProgram::WaitForSets(window);
            Tick(window);
            Press(window, "cmd_Restore");
            QVERIFY(Status(window).startsWith(QStringLiteral("The data has been restored")));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{2});
        QVERIFY(program.Data() != before);
    }

    void A_set_that_has_not_been_restored_stays_chosen() {
        RestoreProgram program;
        WriteContent(program.First / "incomplete.txt", "The file \"9_usage.talvor\" is missing.\r\n");
        program.Prompts.Answers = {PromptAnswer::No};
        program.Show([&](frmRestore& window) {
            Choose(window, 1);
            Tick(window);
            Press(window, "cmd_Restore");
            RestoreProgram::WaitForSets(window);
            QVERIFY(Details(window).startsWith(Shown(program.First)));
            QVERIFY(!Named<QCheckBox>(window, "chk_Confirm").isChecked());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("tbl_Sets"));
        });
    }

    void Another_folder_adds_the_set_that_it_is() {
        RestoreProgram program;
        const std::filesystem::path copy = program.Folder.Path() / "from the stick";
        std::filesystem::copy(program.First, copy);
        program.Dialogs.Choice = copy;
        program.Show([&](frmRestore& window) {
            Press(window, "cmd_Folder");
            RestoreProgram::WaitForSets(window);
            QCOMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), 3);
            QVERIFY(Details(window).startsWith(Shown(copy)));
            QCOMPARE(program.Cell(window, 0, 0), QStringLiteral("from the stick"));
            Press(window, "cmd_Folder"); // the same again
            RestoreProgram::WaitForSets(window);
            QCOMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), 3);
            Tick(window);
            Press(window, "cmd_Restore");
        });
        QCOMPARE(program.Data(), FilesIn(program.First));
    }

    void Another_folder_adds_the_sets_in_it_or_says_that_there_are_none() {
        RestoreProgram program;
        const std::filesystem::path sets = program.Folder.Path() / "sets";
        std::filesystem::create_directory(sets);
        program.Dialogs.Choice = sets;
        program.Show([&](frmRestore& window) {
            Press(window, "cmd_Folder");
            QCOMPARE(Status(window), QStringLiteral("There is no backup set in %1.").arg(Shown(sets)));
            std::filesystem::rename(program.First, sets / "talvor_backupset_1");
            Press(window, "cmd_Folder");
            QCOMPARE(Status(window), QString());
            RestoreProgram::WaitForSets(window);
            QVERIFY(Details(window).startsWith(Shown(sets / "talvor_backupset_1")));
            program.Dialogs.Choice.reset();
            Press(window, "cmd_Folder");
            QCOMPARE(Named<QTableWidget>(window, "tbl_Sets").rowCount(), 3);
        });
    }

    void Without_a_set_there_is_nothing_to_restore() {
        TestProgram program;
        InNextModal<frmRestore>([](frmRestore& window) {
            RestoreProgram::WaitForSets(window);
            QVERIFY(Status(window).startsWith(QStringLiteral("There is no backup set in the backup folder")));
            QVERIFY(!IsEnabled(window, "chk_Confirm"));
            QVERIFY(!IsEnabled(window, "cmd_Restore"));
        });
        ShowRestore(program.App, nullptr);
    }

    void Works_with_keys_alone() {
        RestoreProgram program;
        program.Show([&](frmRestore& window) {
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("tbl_Sets"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            QVERIFY(Details(window).startsWith(Shown(program.First)));
            QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
            QTRY_VERIFY(Named<QCheckBox>(window, "chk_Confirm").isChecked());
            QTest::keyClick(&window, Qt::Key_Return);
            QVERIFY(Status(window).startsWith(QStringLiteral("The data has been restored")));
        });
        QCOMPARE(program.Data(), FilesIn(program.First));
    }

    void Configuration_opens_it_and_knows_when_the_company_is_gone() {
        RestoreProgram program;
        program.App.CurrentCompanyId = 3;
        InNextModal<frmConfig>([&](frmConfig& configuration) {
            InNextModal<frmRestore>([](frmRestore& window) {
                RestoreProgram::WaitForSets(window);
                Tick(window);
                Press(window, "cmd_Restore");
            });
            Press(configuration, "cmd_Restore");
            QVERIFY(!IsEnabled(configuration, "cmd_ExtraPollutants"));
        });
        ShowConfiguration(program.App, nullptr);
        QCOMPARE(program.App.CurrentCompanyId, std::int16_t{0});
        QCOMPARE(program.Data(), FilesIn(program.Second));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_restore_test)
#include "frm_restore_test.moc"
