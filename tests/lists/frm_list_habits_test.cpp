#include "dialogs/dialog_routines.h"
#include "lists/frm_list.h"
#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_import.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// Two materials, and usage of both in March 2005, the month of the tests' calendar, and of one in 2006.
struct HabitProgram : TestProgram {
    HabitProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        App.Changes = &Changes;
        for (const char* customId : {"GC-1", "PF-402"})
            if (SaveMaterial(App, {.CustomId = customId,
                                   .Description = "Described",
                                   .Density = 9.1,
                                   .Contents = "0|0|0|0|0|0",
                                   .Factors = "0|0|0|0|0|0"}))
                qFatal("The test's material was not saved");
        AddUsage(1, "3/2005", 1234.5);
        AddUsage(2, "3/2006", 80);
        Changes.Clear();
    }
    void AddUsage(std::int16_t materialId, const char* period, double quantity) {
        if (SaveUsage(App,
                      {.MaterialId = materialId, .Period = period, .Quantity = quantity, .Unit = UnitLbs}))
            qFatal("The test's usage was not saved");
    }
    void InMaterials(const std::function<void(frmList&)>& act) {
        InNextModal<frmList>(act);
        ShowMaterialList(App, nullptr);
    }
    void InUsage(const std::function<void(frmList&)>& act) {
        InNextModal<frmList>([act](frmList& window) {
            QApplication::setActiveWindow(&window);
            act(window);
        });
        ShowUsageList(App, nullptr);
    }

    History Changes;
};

QListWidget& List(const QWidget& window) {
    return Named<QListWidget>(window, "lst_Main");
}

std::string Status(const QWidget& window) {
    return TextOf<QLabel>(window, "lbl_Status");
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void Choose(const QWidget& window, const char* combo, const char* text) {
    auto& box = Named<QComboBox>(window, combo);
    box.setCurrentIndex(box.findText(QString::fromLatin1(text)));
}

/// Saves PF-402, 402 lbs, in the editor that is about to open.
void EnterUsage(const char* month) {
    InNextModal<frmUsage>([month](frmUsage& editor) {
        Choose(editor, "cbo_MaterialId", "PF-402");
        Choose(editor, "cbo_Month", month);
        Choose(editor, "cbo_Unit", "lbs");
        Named<QLineEdit>(editor, "txt_Quantiry").setText(QStringLiteral("402"));
        Press(editor, "cmd_Save");
    });
}

void Filter(const QWidget& window, const char* year) {
    Choose(window, "cbo_Year", year);
    Press(window, "cmd_Filter");
}

} // namespace

class frm_list_habits_test : public QObject {
    Q_OBJECT

private slots:
    void A_new_record_is_confirmed_with_its_month_and_quantity() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            QCOMPARE(Status(window), std::string("2 records"));
            EnterUsage("MAR");
            Press(window, "cmd_New");
            QCOMPARE(Status(window), std::string("Saved PF-402, MAR 2005, 402 lbs; 2 records this month"));
            QCOMPARE(List(window).accessibleDescription().toStdString(), Status(window));
        });
    }

    void An_edited_record_is_confirmed_too() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            List(window).setCurrentRow(0);
            InNextModal<frmUsage>([](frmUsage& editor) {
                Named<QLineEdit>(editor, "txt_Quantiry").setText(QStringLiteral("0.5"));
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_Edit");
            QCOMPARE(Status(window), std::string("Saved GC-1, MAR 2005, 0.5 lbs; 1 record this month"));
        });
    }

    void A_record_that_the_filter_hides_is_said_to_be_hidden() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            Filter(window, "2006");
            QCOMPARE(Status(window), std::string("1 of 2 records"));
            EnterUsage("APR");
            Press(window, "cmd_New");
            QCOMPARE(
                Status(window),
                std::string("Saved PF-402, APR 2005, 402 lbs; 1 record this month; hidden by the filter"));
        });
    }

    void An_editor_that_saved_nothing_confirms_nothing() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            InNextModal<frmUsage>([](frmUsage& editor) { Press(editor, "cmd_Cancel"); });
            Press(window, "cmd_New");
            QCOMPARE(Status(window), std::string("2 records"));
        });
    }

    void Materials_are_confirmed_by_their_lines() {
        HabitProgram program;
        program.InMaterials([](frmList& window) {
            QCOMPARE(Status(window), std::string("2 materials"));
            InNextModal<frmMaterial>([](frmMaterial& editor) {
                Named<QLineEdit>(editor, "txt_CustomId").setText(QStringLiteral("R-7"));
                Named<QLineEdit>(editor, "txt_Description").setText(QStringLiteral("Tooling"));
                Named<QComboBox>(editor, "cbo_MaterialType").setCurrentIndex(1);
                Named<QLineEdit>(editor, "txt_density").setText(QStringLiteral("9"));
                Named<QLineEdit>(editor, "txt_HapContents").setText(QStringLiteral("30"));
                Press(editor, "cmd_Save");
            });
            Press(window, "cmd_New");
            QCOMPARE(Status(window), std::string("Saved R-7 - Tooling; 3 materials"));
        });
    }

    void A_deletion_and_its_undo_are_confirmed() {
        HabitProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        program.InUsage([](frmList& window) {
            List(window).setCurrentRow(0);
            Press(window, "cmd_Delete");
            QCOMPARE(Status(window), std::string("Deleted GC-1 (3/2005); 1 record"));
            QTest::keyClick(&List(window), Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(Status(window), std::string("Undone: delete GC-1 (3/2005)"));
            QTest::keyClick(&List(window), Qt::Key_Y, Qt::ControlModifier);
            QCOMPARE(Status(window), std::string("Done again: delete GC-1 (3/2005)"));
        });
    }

    void An_import_says_how_many_records_more_there_are() {
        HabitProgram program;
        WriteContent(program.ProgramFile("more.txt"), "GC-1|5|2005|7|lbs\r\nGC-1|6|2005|7|lbs\r\n");
        const QString path = QString::fromStdString(program.ProgramFile("more.txt").string());
        program.InUsage([path](frmList& window) {
            InNextModal<frmImport>([path](frmImport& dialog) {
                Named<QLineEdit>(dialog, "txt_SourceFile").setText(path);
                Press(dialog, "cmd_Import");
            });
            Press(window, "cmd_Import");
            QCOMPARE(Status(window), std::string("4 records, 2 more than before"));
        });
    }

    void Each_line_of_usage_has_its_quantity_as_detail() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            QCOMPARE(List(window).item(0)->text(), QStringLiteral("GC-1 (3/2005)"));
            QCOMPARE(List(window).item(0)->data(DetailRole).toString(), QStringLiteral("1234.5 lbs"));
            QCOMPARE(List(window).item(1)->data(DetailRole).toString(), QStringLiteral("80 lbs"));
        });
    }

    void A_line_keeps_its_own_quantity_if_it_leads_to_a_record_without_material() {
        HabitProgram program;
        program.AddUsage(1, "7/2005", 5);
        program.AddUsage(9, "8/2005", 7000); // there is no material 9
        program.InUsage([](frmList& window) {
            QCOMPARE(List(window).item(2)->data(Qt::UserRole).toInt(), 4); // as described
            QCOMPARE(List(window).item(2)->data(DetailRole).toString(), QStringLiteral("5 lbs"));
        });
    }

    void The_keys_do_what_they_do_elsewhere() {
        HabitProgram program;
        program.InUsage([&program](frmList& window) {
            List(window).setCurrentRow(1);
            std::string opened;
            for (const auto& [key, modifier] :
                 {std::pair(Qt::Key_N, Qt::ControlModifier), std::pair(Qt::Key_F2, Qt::NoModifier),
                  std::pair(Qt::Key_Return, Qt::NoModifier)}) {
                InNextModal<frmUsage>([&opened](frmUsage& editor) {
                    opened += editor.windowTitle().toStdString() + '|';
                    Press(editor, "cmd_Cancel");
                });
                QApplication::setActiveWindow(&window); // the editor before was it
                QTest::keyClick(&List(window), key, modifier);
            }
            QCOMPARE(opened, std::string("New Usage|Material Usage|Material Usage|"));
            QApplication::setActiveWindow(&window);
            QTest::keyClick(&List(window), Qt::Key_Delete);
            QCOMPARE(program.Prompts.LastText(),
                     std::string("Are you sure you want to delete PF-402 (3/2006)? This can not be undone."));
        });
    }

    void The_delete_key_in_a_box_deletes_no_record() {
        HabitProgram program;
        program.InUsage([&program](frmList& window) {
            List(window).setCurrentRow(1);
            QTest::keyClick(&List(window), Qt::Key_F, Qt::ControlModifier);
            QTest::keyClicks(window.focusWidget(), QStringLiteral("gc"));
            QCOMPARE(List(window).currentRow(), 0);
            QTest::keyClick(window.focusWidget(), Qt::Key_Home);
            QTest::keyClick(window.focusWidget(), Qt::Key_Delete);
            QVERIFY(program.Prompts.Shown.empty());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Find"), std::string("c"));
        });
    }

    void A_list_that_cannot_be_read_does_not_say_that_there_is_nothing() {
        HabitProgram program;
        std::filesystem::remove(program.DataFile("1_usage.talvor"));
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        program.InUsage([](frmList& window) {
            QCOMPARE(Status(window), std::string("The usage cannot be read."));
            QVERIFY(!List(window).accessibleDescription().contains(QStringLiteral("No usage")));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
        std::filesystem::remove(program.DataFile("1_materials.talvor"));
        std::filesystem::create_directory(program.DataFile("1_materials.talvor"));
        program.InMaterials([](frmList& window) {
            QCOMPARE(Status(window), std::string("The materials cannot be read."));
            QVERIFY(!List(window).accessibleDescription().contains(QStringLiteral("No materials yet")));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{2});
    }

    void Usage_without_readable_materials_is_not_said_to_be_none() {
        HabitProgram program;
        std::filesystem::remove(program.DataFile("1_materials.talvor"));
        std::filesystem::create_directory(program.DataFile("1_materials.talvor"));
        program.InUsage([](frmList& window) {
            QCOMPARE(Status(window), std::string("The usage cannot be listed without its materials."));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
    }

    void A_filter_that_lets_nothing_pass_says_so_until_it_is_reset() {
        HabitProgram program;
        program.InUsage([](frmList& window) {
            Choose(window, "cbo_Materials", "GC-1"); // used in 2005 only
            Choose(window, "cbo_Year", "2006");
            Press(window, "cmd_Filter");
            QCOMPARE(Status(window), std::string("0 of 2 records"));
            QVERIFY(List(window).accessibleDescription().contains(
                QStringLiteral("The filter lets no record pass.")));
            Press(window, "cmd_Filter");
            QCOMPARE(Status(window), std::string("2 records"));
        });
    }

    void An_empty_list_says_what_to_do_first() {
        TestProgram program;
        InNextModal<frmList>([](frmList& window) {
            QCOMPARE(List(window).count(), 0);
            QVERIFY(List(window).accessibleDescription().contains(QStringLiteral("No materials yet.")));
        });
        ShowMaterialList(program.App, nullptr);
        InNextModal<frmList>([](frmList& window) {
            QCOMPARE(List(window).count(), 0);
            QVERIFY(List(window).accessibleDescription().contains(
                QStringLiteral("No usage yet, and no materials.")));
        });
        ShowUsageList(program.App, nullptr);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_list_habits_test)
#include "frm_list_habits_test.moc"
