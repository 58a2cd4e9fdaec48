#include "lists/frm_list.h"
#include "materials/material_store.h"
#include "store/companies.h"
#include "store/frm_company.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_import.h"
#include "usage/usage_store.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// Two materials, and usage of both in March 2005.
struct UndoProgram : TestProgram {
    History Changes;

    UndoProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        for (const char* customId : {"PR-101", "GC & 2"})
            Add(customId);
        for (const std::int16_t material : {std::int16_t{1}, std::int16_t{2}})
            if (SaveUsage(App, {.MaterialId = material, .Period = "3/2005", .Quantity = 1, .Unit = UnitLbs}))
                qFatal("The test's usage was not saved");
        App.Changes = &Changes;
        Prompts.Answers = {PromptAnswer::Yes};
    }
    void Add(const char* customId) {
        if (SaveMaterial(App, {.CustomId = customId, .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}))
            qFatal("The test's material was not saved");
    }
};

QStringList Lines(const QWidget& window, const char* name = "lst_Main") {
    const auto& list = Named<QListWidget>(window, name);
    QStringList lines;
    for (int row = 0; row < list.count(); ++row)
        lines << list.item(row)->text();
    return lines;
}

QPushButton& Undo(const QWidget& window) {
    return Named<QPushButton>(window, "cmd_Undo");
}

/// The button's whole text, which may be shortened on it.
QString Says(const QWidget& window) {
    return Undo(window).accessibleName();
}

void Delete(QWidget& window, int row) {
    Named<QListWidget>(window, "lst_Main").setCurrentRow(row);
    Named<QPushButton>(window, "cmd_Delete").click();
}

/// Ctrl and the key, in the active window.
void Press(QWidget& window, Qt::Key key) {
    QApplication::setActiveWindow(&window);
    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, Qt::ControlModifier);
}

void InMaterials(TestProgram& program, const std::function<void(frmList&)>& act) {
    InNextModal<frmList>(act);
    ShowMaterialList(program.App, nullptr);
}

void InUsage(TestProgram& program, const std::function<void(frmList&)>& act) {
    InNextModal<frmList>(act);
    ShowUsageList(program.App, nullptr);
}

} // namespace

class frm_list_undo_test : public QObject {
    Q_OBJECT

private slots:
    void The_button_is_hidden_while_nothing_was_done() {
        UndoProgram program;
        InUsage(program, [](frmList& window) {
            QVERIFY(!Undo(window).isVisible());
            Press(window, Qt::Key_Z);
            Press(window, Qt::Key_Y);
            QCOMPARE(Lines(window).size(), 2);
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_button_says_what_it_takes_back() {
        UndoProgram program;
        InUsage(program, [](frmList& window) {
            Delete(window, 0);
            QVERIFY(Undo(window).isVisible());
            QCOMPARE(Undo(window).text(), QStringLiteral("&Undo: delete PR-101 (3/2005)"));
            QCOMPARE(Says(window), QStringLiteral("Undo: delete PR-101 (3/2005)"));
            QVERIFY(Undo(window).toolTip().contains(QStringLiteral("Ctrl+Z")));
            QVERIFY(!Undo(window).toolTip().contains(QStringLiteral("exports")));
            Undo(window).click();
            QCOMPARE(Lines(window),
                     (QStringList{QStringLiteral("PR-101 (3/2005)"), QStringLiteral("GC & 2 (3/2005)")}));
        });
    }

    void An_ampersand_of_a_name_is_shown_as_one() {
        UndoProgram program;
        InUsage(program, [](frmList& window) {
            Delete(window, 1);
            QCOMPARE(Undo(window).text(), QStringLiteral("&Undo: delete GC && 2 (3/2005)"));
        });
    }

    void Keys_take_back_and_do_again() {
        UndoProgram program;
        InUsage(program, [](frmList& window) {
            Delete(window, 0);
            QCOMPARE(Lines(window), QStringList{QStringLiteral("GC & 2 (3/2005)")});
            Press(window, Qt::Key_Z);
            QCOMPARE(Lines(window).size(), 2);
            QVERIFY(Undo(window).isVisible());
            QVERIFY(!Undo(window).isEnabled());
            QVERIFY(Undo(window).toolTip().contains(
                QStringLiteral("Ctrl+Y does again: delete PR-101 (3/2005).")));
            Press(window, Qt::Key_Y);
            QCOMPARE(Lines(window), QStringList{QStringLiteral("GC & 2 (3/2005)")});
            QVERIFY(Undo(window).isEnabled());
        });
    }

    void What_was_done_stays_in_the_list_until_the_program_ends() {
        UndoProgram program;
        InUsage(program, [](frmList& window) { Delete(window, 0); });
        InMaterials(program, [](frmList& window) { QVERIFY(!Undo(window).isVisible()); });
        InUsage(program, [](frmList& window) {
            QVERIFY(Undo(window).isVisible());
            Press(window, Qt::Key_Z);
            QCOMPARE(Lines(window).size(), 2);
        });
    }

    void Materials_are_taken_back_too() {
        UndoProgram program;
        program.Add("PR-7");
        InMaterials(program, [](frmList& window) {
            QCOMPARE(Says(window), QStringLiteral("Undo: add PR-7"));
            QVERIFY(Undo(window).toolTip().contains(QStringLiteral("exports still contain them")));
            Press(window, Qt::Key_Z);
            QCOMPARE(Lines(window).size(), 2);
        });
    }

    void A_refusal_says_why_and_changes_nothing() {
        UndoProgram program;
        program.Add("PR-7");
        if (SaveUsage(program.App, {.MaterialId = 3, .Period = "3/2005", .Unit = UnitLbs}))
            qFatal("Not saved");
        InMaterials(program, [&](frmList& window) {
            Press(window, Qt::Key_Z);
            QCOMPARE(Lines(window).size(), 3);
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{"Cannot undo \"add PR-7\": later usage refers to it."});
            QCOMPARE(Says(window), QStringLiteral("Undo: add PR-7"));
        });
    }

    void An_import_is_taken_back_from_the_list() {
        UndoProgram program;
        const std::filesystem::path source = program.ProgramFile("wrong month.txt");
        WriteContent(source, "PR-101|4|2005|1|lbs\r\nGC & 2|4|2005|2|lbs\r\n");
        InUsage(program, [&](frmList& window) {
            InNextModal<frmImport>([&](frmImport& import) {
                Named<QLineEdit>(import, "txt_SourceFile").setText(QString::fromStdString(source.string()));
                Named<QPushButton>(import, "cmd_Import").click();
            });
            Named<QPushButton>(window, "cmd_Import").click();
            QCOMPARE(Lines(window).size(), 4);
            QCOMPARE(Says(window), QStringLiteral("Undo: import \"wrong month.txt\" (2 records)"));
            Press(window, Qt::Key_Z);
            QCOMPARE(Lines(window).size(), 2);
        });
    }

    void A_long_name_is_shortened_and_widens_no_window() {
        UndoProgram program;
        program.Add(std::string(95, 'W').c_str());
        InMaterials(program, [](frmList& window) {
            const int width = window.width();
            QVERIFY(Undo(window).text().endsWith(QStringLiteral("\u2026")));
            QCOMPARE(Says(window), QStringLiteral("Undo: add ") + QString(95, 'W'));
            window.adjustSize();
            QVERIFY(window.minimumSizeHint().width() <= width);
        });
    }

    void A_company_s_edit_is_taken_back_and_the_focus_stays_in_the_window() {
        UndoProgram program;
        program.App.CurrentCompanyId = 7;
        frmCompany window(program.App, nullptr);
        window.show();
        QVERIFY(!Undo(window).isVisible());
        Named<QLineEdit>(window, "txt_CompanyName").setText(QStringLiteral("Acme"));
        Named<QLineEdit>(window, "txt_CompanyLocation").setText(QStringLiteral("Dock 1"));
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(Lines(window, "lst_Companies"), QStringList{QStringLiteral("Acme (Dock 1)")});
        QCOMPARE(Says(window), QStringLiteral("Undo: add Acme"));
        Named<QListWidget>(window, "lst_Companies").setCurrentRow(0);
        Named<QPushButton>(window, "cmd_Edit").click();
        Named<QLineEdit>(window, "txt_CompanyName").setText(QStringLiteral("Ocme"));
        Named<QPushButton>(window, "cmd_Save").click();
        QCOMPARE(Says(window), QStringLiteral("Undo: edit Ocme"));
        Undo(window).click();
        QCOMPARE(Lines(window, "lst_Companies"), QStringList{QStringLiteral("Acme (Dock 1)")});
        // Company 1 has materials in this program.
        Undo(window).click();
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{"Cannot undo \"add Acme\": it has materials or usage by now."});
    }

    void A_company_that_was_added_by_mistake_goes() {
        TestProgram program;
        History changes;
        program.App.Changes = &changes;
        program.App.CurrentCompanyId = 0;
        frmCompany window(program.App, nullptr);
        window.show();
        Named<QLineEdit>(window, "txt_CompanyName").setText(QStringLiteral("Acme"));
        Named<QLineEdit>(window, "txt_CompanyLocation").setText(QStringLiteral("Dock 1"));
        Named<QPushButton>(window, "cmd_Save").click();
        Undo(window).setFocus();
        Undo(window).click();
        QCOMPARE(Lines(window, "lst_Companies"), QStringList{});
        QVERIFY(window.focusWidget() && window.focusWidget()->isEnabled());
        Press(window, Qt::Key_Y);
        QCOMPARE(Lines(window, "lst_Companies"), QStringList{QStringLiteral("Acme (Dock 1)")});
    }

    void A_refusal_shows_what_another_copy_has_changed() {
        UndoProgram program;
        InUsage(program, [&](frmList& window) {
            Delete(window, 1);
            AppContext other = program.App;
            other.Changes = nullptr;
            QVERIFY(!SaveUsage(
                other, {.UsageId = 2, .MaterialId = 2, .Period = "4/2005", .Quantity = 9, .Unit = UnitLbs}));
            Press(window, Qt::Key_Z);
            QCOMPARE(program.Prompts.LastText(), std::string("Cannot undo \"delete GC & 2 (3/2005)\": it is "
                                                             "not deleted; it is left out from now on."));
            QCOMPARE(Lines(window),
                     (QStringList{QStringLiteral("PR-101 (3/2005)"), QStringLiteral("GC & 2 (4/2005)")}));
            QVERIFY(!Undo(window).isVisible()); // nothing else was done
        });
    }

    void A_company_that_another_copy_has_selected_stays() {
        TestProgram program;
        History changes;
        program.App.Changes = &changes;
        program.App.CurrentCompanyId = 0;
        frmCompany window(program.App, nullptr);
        window.show();
        Named<QLineEdit>(window, "txt_CompanyName").setText(QStringLiteral("Acme"));
        Named<QLineEdit>(window, "txt_CompanyLocation").setText(QStringLiteral("Dock 1"));
        Named<QPushButton>(window, "cmd_Save").click();
        program.Settings.Values[{"COMPANY", "DEFAULT"}] = "1";
        Undo(window).click();
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{"Cannot undo \"add Acme\": it is the current company."});
        QCOMPARE(Lines(window, "lst_Companies"), QStringList{QStringLiteral("Acme (Dock 1)")});
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_list_undo_test)
#include "frm_list_undo_test.moc"
