#include "materials/material_store.h"
#include "tests/support/gui.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

const std::string ErrorsTitle = "Error(s) found while processing the form:\r\n\r\n";

/// Three materials; the first is deleted, so that numbers and rows differ.
struct UsageProgram : TestProgram {
    UsageProgram() {
        for (const char* customId : {"OLD", "GC-110", "R-1"})
            if (SaveMaterial(App, {.CustomId = customId,
                                   .Description = std::string(customId) + " caf\xE9",
                                   .Contents = "0|0|0|0|0|0",
                                   .Factors = "0|0|0|0|0|0"}))
                qFatal("The test's material was not saved");
        if (DeleteMaterial(App, 1, [](std::int16_t) { return false; })) qFatal("Not deleted");
    }
    void AddUsage(std::int16_t materialId, const char* period, std::int16_t unit = UnitLbs) {
        if (SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = 40.25, .Unit = unit}))
            qFatal("The test's usage was not saved");
    }
    std::vector<UsageRecord> Records() {
        std::vector<UsageRecord> records;
        FindUsage(App, {}, records);
        return records;
    }
    int New(const std::function<void(frmUsage&)>& act) {
        InNextModal<frmUsage>(act);
        return NewUsage(App, nullptr);
    }
    int Edit(std::int16_t usageId, const std::function<void(frmUsage&)>& act) {
        InNextModal<frmUsage>(act);
        return EditUsage(App, usageId, nullptr);
    }
    /// The last message without the heading of the error box.
    std::string LastErrors() const { return Prompts.LastText().substr(ErrorsTitle.size()); }
};

QComboBox& Box(const frmUsage& window, const char* name) {
    return Named<QComboBox>(window, name);
}

QLineEdit& Quantity(const frmUsage& window) {
    return Named<QLineEdit>(window, "txt_Quantiry");
}

void Press(const frmUsage& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void SelectData(const frmUsage& window, const char* name, int data) {
    QComboBox& box = Box(window, name);
    box.setCurrentIndex(box.findData(data));
}

void TypeYear(const frmUsage& window, const QString& year) {
    QLineEdit& edit = *Box(window, "cbo_Year").lineEdit();
    edit.selectAll();
    QTest::keyClicks(&edit, year);
}

QStringList ItemsOf(const QComboBox& box) {
    QStringList items;
    for (int row = 0; row < box.count(); ++row)
        items << box.itemText(row) + u'=' + box.itemData(row).toString();
    return items;
}

/// The controls in the order in which Tab reaches them.
QStringList TabOrder(frmUsage& window) {
    QStringList names;
    QApplication::setActiveWindow(&window);
    Box(window, "cbo_MaterialId").setFocus();
    do {
        names << window.focusWidget()->objectName();
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    } while (!names.contains(window.focusWidget()->objectName()));
    return names;
}

} // namespace

class frm_usage_test : public QObject {
    Q_OBJECT

private slots:
    void The_lists_hold_their_entries_and_item_data() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            QCOMPARE(ItemsOf(Box(window, "cbo_MaterialId")), QStringList({"GC-110=2", "R-1=3"}));
            QCOMPARE(ItemsOf(Box(window, "cbo_Month")),
                     QStringList({"JAN=1", "FEB=2", "MAR=3", "APR=4", "MAY=5", "JUN=6", "JUL=7", "AUG=8",
                                  "SEP=9", "OCT=10", "NOV=11", "DEC=12"}));
            QCOMPARE(ItemsOf(Box(window, "cbo_Year")),
                     QStringList({"2000=0", "2001=0", "2002=0", "2003=0", "2004=0", "2005=0", "2006=0",
                                  "2007=0", "2008=0", "2009=0", "2010=0"}));
            QCOMPARE(ItemsOf(Box(window, "cbo_Unit")), QStringList({"Mgal=1", "lbs=2"}));
        });
    }

    void A_new_record_starts_with_todays_month_and_the_first_unit() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("New Usage"));
            QCOMPARE(Box(window, "cbo_MaterialId").currentIndex(), -1);
            QCOMPARE(Box(window, "cbo_Month").currentText(), QStringLiteral("MAR"));
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), 5);
            QCOMPARE(Box(window, "cbo_Unit").currentText(), QStringLiteral("Mgal"));
            QVERIFY(Quantity(window).text().isEmpty());
            QVERIFY(TextOf<QLabel>(window, "lbl_Id").empty());
            QVERIFY(Named<QLabel>(window, "lbl_Id").isHidden());
            QVERIFY(Named<QLabel>(window, "lbl_result").isHidden());
        });
    }

    void A_year_of_today_beyond_the_list_stands_there_as_if_typed() {
        UsageProgram program;
        program.Calendar.Month = {std::chrono::year{2026}, std::chrono::November};
        program.New([](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), -1);
            QCOMPARE(Box(window, "cbo_Year").currentText(), QStringLiteral("2026"));
            QCOMPARE(Box(window, "cbo_Month").currentText(), QStringLiteral("NOV"));
        });
    }

    void Without_materials_there_is_a_message_and_no_window() {
        TestProgram program;
        QCOMPARE(NewUsage(program.App, nullptr), -1);
        QCOMPARE(
            program.ShownTexts(),
            std::vector{ErrorsTitle + "You can not add new usage record without adding Materials first."});
        QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::FormErrors);
    }

    void The_description_of_the_selected_material_is_shown() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            QVERIFY(TextOf<QLabel>(window, "lbl_Description").empty());
            SelectData(window, "cbo_MaterialId", 3);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Description"), std::string("R-1 caf\xC3\xA9"));
        });
    }

    void A_new_record_is_stored_and_the_opener_told() {
        UsageProgram program;
        const int result = program.New([](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 3);
            SelectData(window, "cbo_Month", 11);
            TypeYear(window, QStringLiteral("2026"));
            Quantity(window).setText(QStringLiteral("1.5"));
            SelectData(window, "cbo_Unit", 2);
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
            QCOMPARE(TextOf<QLabel>(window, "lbl_result"), std::string("0"));
        });
        QCOMPARE(result, 0);
        QCOMPARE(program.Records().size(), std::size_t{1});
        const UsageRecord record = program.Records().front();
        QCOMPARE(record.UsageId, std::int16_t{1});
        QCOMPARE(record.MaterialId, std::int16_t{3});
        QCOMPARE(record.Period, std::string("11/2026"));
        QCOMPARE(record.Quantity, 1.5);
        QCOMPARE(record.Unit, UnitLbs);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_quantity_with_blanks_around_it_is_stored_as_its_number() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Quantity(window).setText(QStringLiteral("  12.5  "));
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Records().size(), std::size_t{1});
        QCOMPARE(program.Records().front().Quantity, 12.5);
    }

    void Errors_are_shown_together_and_the_window_stays() {
        UsageProgram program;
        const int result = program.New([&program](frmUsage& window) {
            Box(window, "cbo_Month").setCurrentIndex(-1);
            Quantity(window).setText(QStringLiteral("12,5"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_MaterialId"));
            QCOMPARE(program.ShownTexts(),
                     std::vector{ErrorsTitle + "- You must select material to add a usage.\r\n"
                                               "- Quantity Used must ba a valid numeric value.\r\n"
                                               "- You must select month and year.\r\n"});
            QCOMPARE(Quantity(window).text(), QStringLiteral("12,5"));
        });
        QCOMPARE(result, -1);
        QVERIFY(program.Records().empty());
    }

    void The_first_field_with_an_error_gets_the_focus() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Press(window, "cmd_Save");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Quantiry"));
            Quantity(window).setText(QStringLiteral("1"));
            TypeYear(window, QStringLiteral("26"));
            Press(window, "cmd_Save");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_Year"));
            Box(window, "cbo_Month").setCurrentIndex(-1);
            Press(window, "cmd_Save");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_Month"));
        });
        QVERIFY(program.Records().empty());
    }

    void A_second_record_for_a_material_and_month_is_refused() {
        UsageProgram program;
        program.AddUsage(2, "3/2005");
        const int result = program.New([&program](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Quantity(window).setText(QStringLiteral("7"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(program.LastErrors(),
                     std::string("- Usage with the same Material ID and Date already exsist."));
        });
        QCOMPARE(result, -1);
        QCOMPARE(program.Records().size(), std::size_t{1});
    }

    void The_next_new_record_starts_with_the_month_year_and_unit_of_the_last_one() {
        UsageProgram program;
        program.Calendar.Month = {std::chrono::year{2010}, std::chrono::July};
        program.New([](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            SelectData(window, "cbo_Month", 3);
            Box(window, "cbo_Year").setCurrentIndex(5);
            SelectData(window, "cbo_Unit", 2);
            Quantity(window).setText(QStringLiteral("7"));
            Press(window, "cmd_Save");
        });
        program.New([](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Month").currentText(), QStringLiteral("MAR"));
            QCOMPARE(Box(window, "cbo_Year").currentText(), QStringLiteral("2005"));
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), 5);
            QCOMPARE(Box(window, "cbo_Unit").currentText(), QStringLiteral("lbs"));
            QCOMPARE(Box(window, "cbo_MaterialId").currentIndex(), -1);
            QVERIFY(Quantity(window).text().isEmpty());
        });
    }

    void A_remembered_year_beyond_the_list_stands_there_as_if_typed() {
        UsageProgram program;
        program.App.LastUsage = {4, "2026", UnitMgal};
        program.New([](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), -1);
            QCOMPARE(Box(window, "cbo_Year").currentText(), QStringLiteral("2026"));
        });
    }

    void An_edit_is_not_remembered() {
        UsageProgram program;
        program.AddUsage(2, "5/2007");
        QCOMPARE(program.Edit(1, [](frmUsage& window) { Press(window, "cmd_Save"); }), 0);
        QCOMPARE(program.App.LastUsage.Unit, std::int16_t{0});
    }

    void The_tab_key_goes_through_the_fields_in_their_order() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            QCOMPARE(TabOrder(window), QStringList({"cbo_MaterialId", "cbo_Month", "cbo_Year", "txt_Quantiry",
                                                    "cbo_Unit", "cmd_Save", "cmd_Cancel", "lbl_Company"}));
        });
    }

    void The_tab_key_passes_by_a_remembered_month_and_year() {
        UsageProgram program;
        program.App.LastUsage = {3, "2005", UnitLbs};
        program.New([](frmUsage& window) {
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_MaterialId"));
            QCOMPARE(TabOrder(window), QStringList({"cbo_MaterialId", "txt_Quantiry", "cbo_Unit", "cmd_Save",
                                                    "cmd_Cancel", "cbo_Month", "cbo_Year", "lbl_Company"}));
        });
    }

    void An_edit_shows_the_record() {
        UsageProgram program;
        program.AddUsage(2, "4/2005");
        program.AddUsage(3, "12/2009", UnitMgal);
        const int result = program.Edit(2, [](frmUsage& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Material Usage"));
            QCOMPARE(Box(window, "cbo_MaterialId").currentText(), QStringLiteral("R-1"));
            QCOMPARE(Box(window, "cbo_Month").currentText(), QStringLiteral("DEC"));
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), 9);
            QCOMPARE(Box(window, "cbo_Unit").currentText(), QStringLiteral("Mgal"));
            QCOMPARE(Quantity(window).text(), QStringLiteral("40.25"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Id"), std::string("2"));
            QVERIFY(TextOf<QLabel>(window, "lbl_result").empty());
        });
        QCOMPARE(result, -1);
    }

    void A_record_of_a_year_beyond_the_list_opens_with_no_year_selected_and_keeps_it() {
        UsageProgram program;
        program.AddUsage(2, "3/2026");
        const int result = program.Edit(1, [](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Year").currentIndex(), -1);
            QCOMPARE(Box(window, "cbo_Year").currentText(), QStringLiteral("2026"));
            Quantity(window).setText(QStringLiteral("8"));
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, 0);
        QCOMPARE(program.Records().front().Period, std::string("3/2026"));
        QCOMPARE(program.Records().front().Quantity, 8.0);
    }

    void A_record_whose_month_is_none_asks_for_one() {
        UsageProgram program;
        program.AddUsage(2, "13/2005");
        const int result = program.Edit(1, [&program](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Month").currentIndex(), -1);
            Press(window, "cmd_Save");
            QCOMPARE(program.LastErrors(), std::string("- You must select month and year.\r\n"));
        });
        QCOMPARE(result, -1);
        QCOMPARE(program.Records().front().Period, std::string("13/2005"));
    }

    void A_record_of_an_unknown_unit_asks_for_one() {
        UsageProgram program;
        program.AddUsage(2, "3/2005", 7);
        program.Edit(1, [&program](frmUsage& window) {
            QCOMPARE(Box(window, "cbo_Unit").currentIndex(), -1);
            Press(window, "cmd_Save");
            QCOMPARE(program.LastErrors(), std::string("- You must select unit.\r\n"));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_Unit"));
        });
        QCOMPARE(program.Records().front().Unit, std::int16_t{7});
    }

    void An_edit_that_keeps_material_and_month_is_no_duplicate_of_itself() {
        UsageProgram program;
        program.AddUsage(2, "3/2005");
        program.AddUsage(3, "3/2005");
        const int result = program.Edit(2, [](frmUsage& window) {
            Quantity(window).setText(QStringLiteral("9"));
            Press(window, "cmd_Save");
        });
        QCOMPARE(result, 0);
        QCOMPARE(program.Records().size(), std::size_t{2});
        QCOMPARE(program.Records()[0].Quantity, 40.25);
        QCOMPARE(program.Records()[1].Quantity, 9.0);
    }

    void An_edit_towards_another_records_material_and_month_is_refused() {
        UsageProgram program;
        program.AddUsage(2, "3/2005");
        program.AddUsage(3, "3/2005");
        const std::string before = ContentOf(program.DataFile("1_usage.talvor"));
        const int result = program.Edit(2, [&program](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(program.LastErrors(),
                     std::string("- Usage with the same Material ID and Date already exsist."));
        });
        QCOMPARE(result, -1);
        QCOMPARE(ContentOf(program.DataFile("1_usage.talvor")), before);
    }

    void A_record_that_is_gone_is_not_edited() {
        UsageProgram program;
        program.AddUsage(2, "3/2005");
        QVERIFY(!DeleteUsage(program.App, 1));
        QCOMPARE(EditUsage(program.App, 1, nullptr), -1);
        QCOMPARE(program.ShownTexts(),
                 std::vector{ErrorsTitle + "- Usage not found. Please reopen the list form."});
    }

    void A_record_is_not_edited_where_no_material_is_left() {
        TestProgram program;
        QVERIFY(!SaveUsage(program.App, {.MaterialId = 2, .Period = "3/2005", .Unit = UnitLbs}));
        QCOMPARE(EditUsage(program.App, 1, nullptr), -1);
        QCOMPARE(program.ShownTexts(), std::vector{ErrorsTitle + "- Materials Data is not found."});
    }

    void Materials_that_cannot_be_read_are_said_once() {
        TestProgram program;
        std::filesystem::create_directory(program.DataFile("1_materials.talvor"));
        QVERIFY(!SaveUsage(program.App, {.MaterialId = 2, .Period = "3/2005", .Unit = UnitLbs}));
        QCOMPARE(NewUsage(program.App, nullptr), -1);
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
        QCOMPARE(EditUsage(program.App, 1, nullptr), -1);
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{2});
        QCOMPARE(program.Prompts.Shown.back().Kind, PromptKind::Failure);
    }

    void Usage_that_cannot_be_read_is_said_once_and_nothing_is_saved() {
        UsageProgram program;
        InNextModal<frmUsage>([&](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Quantity(window).setText(QStringLiteral("7"));
            std::filesystem::remove(program.DataFile("1_usage.talvor"));
            std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
        });
        QCOMPARE(NewUsage(program.App, nullptr), -1);
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
        QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::Failure);
    }

    void A_save_that_fails_keeps_the_window_and_what_was_typed() {
        UsageProgram program;
        LimitedFiles files;
        AppContext app{program.Prompts,           program.Settings,
                       program.Programs,          program.Dialogs,
                       program.Calendar,          files,
                       program.App.ProgramFolder, 1};
        files.Limits[program.DataFile("1_usage.talvor")].LongestFile = 10;
        InNextModal<frmUsage>([](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Quantity(window).setText(QStringLiteral("7"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(Quantity(window).text(), QStringLiteral("7"));
            QVERIFY(TextOf<QLabel>(window, "lbl_result").empty());
        });
        QCOMPARE(NewUsage(app, nullptr), -1);
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"The disk is full."});
        QCOMPARE(app.LastUsage.Unit, std::int16_t{0});
    }

    void Enter_saves_and_Escape_and_Cancel_do_not() {
        UsageProgram program;
        const auto fill = [](frmUsage& window) {
            SelectData(window, "cbo_MaterialId", 2);
            Quantity(window).setText(QStringLiteral("7"));
        };
        QCOMPARE(program.New([&](frmUsage& window) {
            fill(window);
            Press(window, "cmd_Cancel");
            QVERIFY(!window.isVisible());
        }),
                 -1);
        QCOMPARE(program.New([&](frmUsage& window) {
            fill(window);
            QTest::keyClick(&Quantity(window), Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        }),
                 -1);
        QCOMPARE(program.New([&](frmUsage& window) {
            fill(window);
            QTest::keyClick(&Named<QPushButton>(window, "cmd_Cancel"), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        }),
                 -1);
        QVERIFY(program.Records().empty());
        QCOMPARE(program.New([&](frmUsage& window) {
            fill(window);
            QTest::keyClick(&Quantity(window), Qt::Key_Return);
        }),
                 0);
        QCOMPARE(program.Records().size(), std::size_t{1});
    }

    void A_character_that_the_code_page_lacks_is_shown_as_a_question_mark() {
        UsageProgram program;
        program.New([](frmUsage& window) {
            Quantity(window).insert(QStringLiteral("1\u2212\u0141"));
            QCOMPARE(Quantity(window).text(), QStringLiteral("1??"));
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_usage_test)
#include "frm_usage_test.moc"
