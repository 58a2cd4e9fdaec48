#include "dialogs/hint_label.h"
#include "lists/frm_list.h"
#include "lists/frm_month_sheet.h"
#include "lists/sheet_view.h"
#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <array>
#include <functional>
#include <string>

namespace mact {
namespace {

using Table = MonthSheetTable;

/// Three materials used in 1/2005 or 2/2005, and one that never was. The next month is 3/2005.
struct SheetProgram : TestProgram {
    SheetProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        AddMaterial("GC-1", "White <gel> coat", 10);
        AddMaterial("GC-2", "Caf\xE9", 9);
        AddMaterial("PR-1", "Resin", 8);
        AddMaterial("PR-2", "Never used", 8);
        AddUsage(1, "2/2005", 12, UnitLbs);
        AddUsage(2, "1/2005", 0.5, UnitMgal);
        AddUsage(3, "2/2005", 7, UnitLbs);
    }
    void AddMaterial(const std::string& customId, const char* description, double density) {
        if (SaveMaterial(App, {.CustomId = customId,
                               .Description = description,
                               .Density = density,
                               .Contents = "0|0|0|0|0|0",
                               .Factors = "0|0|0|0|0|0"}))
            qFatal("The test's material was not saved");
    }
    void AddUsage(std::int16_t materialId, const char* period, double quantity, std::int16_t unit) {
        if (SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = quantity, .Unit = unit}))
            qFatal("The test's usage was not saved");
    }
    /// As "1 12 lbs": material, quantity, unit.
    QStringList Stored(const char* period) {
        std::vector<UsageRecord> found;
        FindUsage(App, {.Periods = period}, found);
        QStringList records;
        for (const UsageRecord& usage : found)
            records << QStringLiteral("%1 %2 %3")
                           .arg(usage.MaterialId)
                           .arg(usage.Quantity)
                           .arg(usage.Unit == UnitLbs ? QStringLiteral("lbs") : QStringLiteral("Mgal"));
        return records;
    }
    std::string UsageBytes() const { return ContentOf(DataFile("1_usage.talvor")); }
};

/// While the first message is shown, the usage becomes unreadable.
class UnreadableUsage : public MessagePrompts {
public:
    explicit UnreadableUsage(TestProgram& program) : m_program(program) {}
    PromptAnswer Show(const Prompt& prompt) override {
        if (m_program.Prompts.Shown.empty()) {
            std::filesystem::remove(m_program.DataFile("1_usage.talvor"));
            std::filesystem::create_directory(m_program.DataFile("1_usage.talvor"));
        }
        return m_program.Prompts.Show(prompt);
    }

private:
    TestProgram& m_program;
};

/// Returns what ShowMonthSheet does.
bool InSheet(TestProgram& program, const std::function<void(frmMonthSheet&)>& act) {
    InNextModal<frmMonthSheet>([&](frmMonthSheet& window) {
        QApplication::setActiveWindow(&window);
        act(window);
    });
    return ShowMonthSheet(program.App, nullptr);
}

SheetView& View(const QWidget& window) {
    return Named<SheetView>(window, "tbl_Rows");
}

QString Cell(const QWidget& window, int row, int column) {
    const QAbstractItemModel& model = *View(window).model();
    return model.data(model.index(row, column)).toString();
}

/// The column, from the top to the last row but the empty one.
QStringList Column(const QWidget& window, int column) {
    QStringList cells;
    for (int row = 0; row + 1 < View(window).model()->rowCount(); ++row)
        cells << Cell(window, row, column);
    return cells;
}

std::pair<int, int> Current(const QWidget& window) {
    const QModelIndex current = View(window).currentIndex();
    return {current.row(), current.column()};
}

/// Until nothing is left to be said of what was typed.
void WaitForOutlook(const QWidget& window) {
    while (Named<QTimer>(window, "tmr_Outlook").isActive() || Named<QTimer>(window, "tmr_Changed").isActive())
        QCoreApplication::processEvents();
}

/// Counts the keys that are pressed.
int keysPressed = 0;

void Key(const QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    ++keysPressed;
    QWidget* focus = window.focusWidget();
    QTest::keyClick(focus ? focus : &View(window), key, modifiers);
}

/// Digits and letters, one key each; what a user types, "\n" for Enter, "\t" for Tab.
void Type(const QWidget& window, const char* text) {
    for (const char* letter = text; *letter != 0; ++letter) {
        if (*letter == '\n') {
            Key(window, Qt::Key_Return);
        } else if (*letter == '\t') {
            Key(window, Qt::Key_Tab);
        } else {
            ++keysPressed;
            QWidget* focus = window.focusWidget();
            QTest::keyClick(focus ? focus : &View(window), *letter);
        }
    }
}

void PasteText(const QWidget& window, const char* text) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
    Key(window, Qt::Key_V, Qt::ControlModifier);
}

std::string Label(const QWidget& window, const char* name) {
    QCoreApplication::processEvents(); // the sums follow the keys
    return TextOf<QLabel>(window, name);
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void ChooseMonth(const QWidget& window, int month) {
    Named<QComboBox>(window, "cbo_Month").setCurrentIndex(month - 1);
}

QString MonthShown(const QWidget& window) {
    return Named<QComboBox>(window, "cbo_Month").currentText() + u' ' +
           Named<QComboBox>(window, "cbo_Year").currentText();
}

} // namespace

class frm_month_sheet_test : public QObject {
    Q_OBJECT

private slots:
    void It_opens_at_the_month_after_the_newest_with_a_row_for_each_material_used() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            QCOMPARE(MonthShown(window), QStringLiteral("MAR 2005"));
            QCOMPARE(Column(window, Table::MaterialId), QStringList({"GC-1", "GC-2", "PR-1"}));
            QCOMPARE(Column(window, Table::Description),
                     QStringList({"White <gel> coat", "Caf\u00E9", "Resin"}));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "", ""}));
            QCOMPARE(Column(window, Table::Unit), QStringList({"lbs", "Mgal", "lbs"}));
            QCOMPARE(Column(window, Table::MonthBefore), QStringList({"12 lbs", "", "7 lbs"}));
            QCOMPARE(Column(window, Table::Recorded), QStringList({"", "", ""}));
            QCOMPARE(Current(window), std::pair(0, int{Table::Quantity}));
            QVERIFY(View(window).hasFocus());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void The_month_before_is_grey() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            const QAbstractItemModel& model = *View(window).model();
            QCOMPARE(model.data(model.index(0, Table::MonthBefore), Qt::ForegroundRole).value<QColor>(),
                     QApplication::palette().color(QPalette::PlaceholderText));
            QVERIFY(!model.data(model.index(0, Table::Quantity), Qt::ForegroundRole).isValid());
        });
    }

    void Without_materials_it_says_what_the_editor_says() {
        TestProgram program;
        QVERIFY(!ShowMonthSheet(program.App, nullptr));
        QCOMPARE(program.Prompts.LastText(),
                 std::string("Error(s) found while processing the form:\r\n\r\n"
                             "You can not add new usage record without adding Materials first."));
    }

    void Records_that_cannot_be_read_are_a_failure_shown_once() {
        SheetProgram program;
        std::filesystem::remove(program.DataFile("1_usage.talvor"));
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        QVERIFY(!ShowMonthSheet(program.App, nullptr));
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
        QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::Failure);
    }

    void Ten_records_take_thirty_keys() {
        SheetProgram program;
        for (std::int16_t number = 5; number <= 11; ++number) {
            program.AddMaterial("X-" + std::to_string(10 + number), "", 8);
            program.AddUsage(number, "2/2005", 1, UnitLbs);
        }
        keysPressed = 0;
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            Type(window, "11\n12\n13\n14\n15\n16\n17\n18\n19\n20");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Saved 10 records of 3/2005."));
        }));
        QCOMPARE(keysPressed, 30);
        QCOMPARE(program.Stored("3/2005"),
                 QStringList({"1 11 lbs", "2 12 Mgal", "3 13 lbs", "5 14 lbs", "6 15 lbs", "7 16 lbs",
                              "8 17 lbs", "9 18 lbs", "10 19 lbs", "11 20 lbs"}));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Enter_goes_down_and_does_not_save() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n");
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            Type(window, "\n\n"); // without a text, and on to the empty row
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
            Type(window, "\n");
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
        });
        QCOMPARE(program.Stored("3/2005"), QStringList());
    }

    void Up_from_the_empty_row_goes_back_to_the_last_quantity() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n6\n70\n");
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
            Key(window, Qt::Key_Up);
            Type(window, "7\n");
            QCOMPARE(Column(window, Table::Quantity), QStringList({"5", "6", "7"}));
            Type(window, "x");
            Key(window, Qt::Key_Up); // also from an ID that is being typed
            QCOMPARE(Current(window), std::pair(2, int{Table::Quantity}));
        });
    }

    void Tab_goes_to_the_next_cell_for_an_entry_and_then_to_the_next_row() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\t");
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("5"));
            QCOMPARE(Current(window), std::pair(0, int{Table::Unit}));
            Type(window, "\t");
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            Key(window, Qt::Key_Backtab, Qt::ShiftModifier);
            QCOMPARE(Current(window), std::pair(0, int{Table::Unit}));
            View(window).GoTo(2, Table::Unit);
            Type(window, "\t");
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
            Type(window, "\t"); // and at the end out of the table
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cmd_Save"));
        });
    }

    void Arrows_go_anywhere_and_end_what_is_typed() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "4");
            Key(window, Qt::Key_Down);
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("4"));
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            Type(window, "6");
            Key(window, Qt::Key_Right);
            QCOMPARE(Cell(window, 1, Table::Quantity), QStringLiteral("6"));
            QCOMPARE(Current(window), std::pair(1, int{Table::Unit}));
            Key(window, Qt::Key_Up);
            for (int key = 0; key < 3; ++key)
                Key(window, Qt::Key_Left);
            QCOMPARE(Current(window), std::pair(0, int{Table::MaterialId}));
        });
    }

    void Left_goes_through_a_text_before_it_leaves_it() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "24");
            Key(window, Qt::Key_Left);
            Type(window, "3\n");
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("234"));
        });
    }

    void Escape_ends_what_is_typed_and_then_closes() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5");
            Key(window, Qt::Key_Escape);
            QVERIFY(window.isVisible());
            QCOMPARE(Cell(window, 0, Table::Quantity), QString());
            Key(window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_unit_is_chosen_by_a_single_key() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(0, Table::Unit);
            Type(window, "m");
            QCOMPARE(Cell(window, 0, Table::Unit), QStringLiteral("Mgal"));
            Type(window, "l");
            QCOMPARE(Cell(window, 0, Table::Unit), QStringLiteral("lbs"));
            Key(window, Qt::Key_Space);
            QCOMPARE(Cell(window, 0, Table::Unit), QStringLiteral("Mgal"));
            Key(window, Qt::Key_F4);
            QCOMPARE(Cell(window, 0, Table::Unit), QStringLiteral("lbs"));
            Key(window, Qt::Key_Delete);
            QCOMPARE(Cell(window, 0, Table::Unit), QString());
            QCOMPARE(Current(window), std::pair(0, int{Table::Unit}));
        });
    }

    void A_double_click_changes_the_unit() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            SheetView& view = View(window);
            const QPoint cell = view.visualRect(view.model()->index(1, Table::Unit)).center();
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell);
            QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell);
            QCOMPARE(Cell(window, 1, Table::Unit), QStringLiteral("lbs"));
        });
    }

    void Delete_empties_the_selected_cells() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n6\n");
            View(window).GoTo(0, Table::Quantity);
            Key(window, Qt::Key_Down, Qt::ShiftModifier);
            Key(window, Qt::Key_Delete);
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "", ""}));
            QCOMPARE(Column(window, Table::Unit), QStringList({"lbs", "Mgal", "lbs"}));
        });
        QVERIFY(program.Prompts.Shown.empty()); // nothing is left that would be lost
    }

    void A_letter_in_a_cell_that_only_shows_does_nothing() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(0, Table::Description);
            Type(window, "r9");
            QCOMPARE(Current(window), std::pair(0, int{Table::Description}));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "", ""}));
        });
    }

    void Ctrl_D_copies_the_month_before_into_the_selected_rows() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Key(window, Qt::Key_D, Qt::ControlModifier);
            QCOMPARE(Column(window, Table::Quantity), QStringList({"12", "", ""}));
            View(window).selectAll();
            Key(window, Qt::Key_D, Qt::ControlModifier);
            QCOMPARE(Column(window, Table::Quantity), QStringList({"12", "", "7"}));
            QCOMPARE(Column(window, Table::Unit), QStringList({"lbs", "Mgal", "lbs"}));
        });
    }

    void Ctrl_D_takes_the_place_of_what_is_being_typed() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "99");
            Key(window, Qt::Key_D, Qt::ControlModifier);
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("12"));
            QVERIFY(View(window).hasFocus());
            View(window).GoTo(1, Table::Quantity);
            Type(window, "8");
            Key(window, Qt::Key_D, Qt::ControlModifier); // without a month before, it stays
            QCOMPARE(Cell(window, 1, Table::Quantity), QStringLiteral("8"));
        });
    }

    void The_button_copies_the_month_before_too_and_leaves_the_focus_in_the_table() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Press(window, "cmd_CopyLast");
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("12"));
            QVERIFY(View(window).hasFocus());
        });
    }

    void A_typed_Material_ID_gets_a_row_and_goes_to_its_quantity() {
        SheetProgram program;
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            Type(window, " pr-2\n");
            QCOMPARE(Column(window, Table::MaterialId), QStringList({"GC-1", "GC-2", "PR-1", "PR-2"}));
            QCOMPARE(Current(window), std::pair(3, int{Table::Quantity}));
            Type(window, "9\tl");
            QCOMPARE(Cell(window, 4, Table::MaterialId), QString()); // one more empty row
            Key(window, Qt::Key_S, Qt::ControlModifier);
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList({"4 9 lbs"}));
    }

    void A_Material_ID_is_completed_as_it_is_typed() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            Type(window, "pr");
            QCOMPARE(Named<QLineEdit>(window, "txt_Cell").text(), QStringLiteral("pr-1"));
            Type(window, "-2");
            QCOMPARE(Named<QLineEdit>(window, "txt_Cell").text(), QStringLiteral("pr-2"));
            Type(window, "\t");
            QCOMPARE(Cell(window, 3, Table::MaterialId), QStringLiteral("PR-2"));
            QCOMPARE(Current(window), std::pair(3, int{Table::Quantity}));
        });
    }

    void A_Material_ID_that_has_a_row_goes_there() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            Type(window, "GC-2\n");
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            QCOMPARE(View(window).model()->rowCount(), 4);
            QCOMPARE(Cell(window, 3, Table::MaterialId), QString());
        });
    }

    void An_unknown_Material_ID_is_said_beside_it_and_nothing_is_saved() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        QVERIFY(!InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5");
            View(window).GoTo(3, Table::MaterialId);
            Type(window, "XX\n");
            QCOMPARE(Cell(window, 3, Table::Remark),
                     QStringLiteral("There is no material with this Material ID."));
            QCOMPARE(Label(window, "lbl_Wrong"), std::string("There is no material with this Material ID."));
            View(window).GoTo(0, Table::Quantity);
            Press(window, "cmd_Save");
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
            Key(window, Qt::Key_Delete);
            QCOMPARE(Cell(window, 3, Table::Remark), QString());
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList());
    }

    void An_emptied_Material_ID_is_none_even_if_a_record_has_an_empty_one() {
        SheetProgram program;
        program.AddMaterial("", "Damaged", 8);
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            Type(window, "x");
            Key(window, Qt::Key_Backspace);
            Key(window, Qt::Key_Return);
            QCOMPARE(Column(window, Table::MaterialId), QStringList({"GC-1", "GC-2", "PR-1"}));
            QCOMPARE(Current(window), std::pair(3, int{Table::MaterialId}));
        });
    }

    void A_pasted_column_fills_the_rows_from_the_current_one_on() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(1, Table::Quantity);
            PasteText(window, "1,250.5\n3\n4\n");
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "1250.5", "3"}));
            QVERIFY(Named<QPlainTextEdit>(window, "txt_Unmatched").isVisible());
            QCOMPARE(Named<QPlainTextEdit>(window, "txt_Unmatched").toPlainText(),
                     QStringLiteral("Line 3: 4: There is no row left for it."));
        });
    }

    void Pasted_columns_are_matched_by_Material_ID_and_the_rest_is_named() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            QVERIFY(!Named<QPlainTextEdit>(window, "txt_Unmatched").isVisible());
            PasteText(window, "pr-2\t4\tlbs\nXX\t5\tlbs\nGC-2\t6\n");
            QCOMPARE(Column(window, Table::MaterialId), QStringList({"GC-1", "GC-2", "PR-1", "PR-2"}));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "6", "", "4"}));
            QCOMPARE(Column(window, Table::Unit), QStringList({"lbs", "Mgal", "lbs", "lbs"}));
            QCOMPARE(Named<QPlainTextEdit>(window, "txt_Unmatched").toPlainText(),
                     QStringLiteral("Line 2: XX | 5 | lbs: There is no material with this Material ID."));
            PasteText(window, "GC-1\t1\n");
            QVERIFY(!Named<QPlainTextEdit>(window, "txt_Unmatched").isVisible());
        });
    }

    void A_long_line_that_was_pasted_is_named_by_its_beginning() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            PasteText(window, ("1\n" + std::string(201, 'x')).c_str());
            QCOMPARE(
                Named<QPlainTextEdit>(window, "txt_Unmatched").toPlainText(),
                QStringLiteral("Line 2: %1\u2026: The quantity is not a number.").arg(QString(200, u'x')));
            Key(window, Qt::Key_Delete);
        });
    }

    void A_Material_ID_can_be_pasted_into_the_empty_row() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            PasteText(window, "PR-2\r\n");
            QCOMPARE(Cell(window, 3, Table::MaterialId), QStringLiteral("PR-2"));
            QCOMPARE(Current(window), std::pair(3, int{Table::Quantity}));
        });
    }

    void What_is_wrong_stands_beside_its_row_and_nothing_is_saved() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        const std::string before = program.UsageBytes();
        QVERIFY(!InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\nabc\n1.2.3");
            Press(window, "cmd_Save");
            QCOMPARE(Column(window, Table::Remark),
                     QStringList({"", "Quantity Used must ba a valid numeric value.",
                                  "Quantity Used must ba a valid numeric value."}));
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            QCOMPARE(Label(window, "lbl_Wrong"), std::string("Quantity Used must ba a valid numeric value."));
            QCOMPARE(Label(window, "lbl_Saved"),
                     std::string("Nothing was saved: something is wrong in 2 rows."));
        }));
        QCOMPARE(program.UsageBytes(), before);
    }

    void A_doubtful_quantity_is_remarked_in_amber_and_saved_all_the_same() {
        SheetProgram program;
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n90"); // GC-2: 90 Mgal after 0.5
            const QAbstractItemModel& model = *View(window).model();
            Key(window, Qt::Key_Return);
            const QString remark = Cell(window, 1, Table::Remark);
            QVERIFY2(remark.startsWith(QStringLiteral("Over five times")), qPrintable(remark));
            QVERIFY(
                remark.endsWith(QStringLiteral("this material's median month; 1 Mgal is 1,000 gallons.")));
            QCOMPARE(model.data(model.index(1, Table::Remark), Qt::ForegroundRole).value<QColor>(),
                     DoubtColour(QApplication::palette()));
            QCOMPARE(Cell(window, 0, Table::Remark), QString());
            Press(window, "cmd_Save");
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Saved 2 records of 3/2005."));
        }));
    }

    void A_quantity_without_a_unit_is_not_saved_and_its_unit_is_focused() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        QVERIFY(!InSheet(program, [](frmMonthSheet& window) {
            View(window).GoTo(3, Table::MaterialId);
            Type(window, "PR-2\n5");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Cell(window, 3, Table::Remark), QStringLiteral("You must select unit."));
            QCOMPARE(Current(window), std::pair(3, int{Table::Unit}));
        }));
    }

    void A_record_that_exists_is_shown_and_edited() {
        SheetProgram program;
        program.AddUsage(1, "3/2005", 40, UnitLbs);
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            QCOMPARE(MonthShown(window), QStringLiteral("APR 2005"));
            ChooseMonth(window, 3);
            QCOMPARE(Column(window, Table::Quantity), QStringList({"40", "", ""}));
            QCOMPARE(Column(window, Table::Recorded), QStringList({"Yes", "", ""}));
            Type(window, "41");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Saved 1 record of 3/2005."));
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList({"1 41 lbs"}));
    }

    void A_record_that_another_copy_changed_is_refused_beside_its_row() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        QVERIFY(!InSheet(program, [&](frmMonthSheet& window) {
            program.AddUsage(3, "3/2005", 1, UnitLbs); // meanwhile, by another copy
            Type(window, "5\n\n6");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
            QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::Failure);
            QVERIFY(!Cell(window, 2, Table::Remark).isEmpty());
            QCOMPARE(Cell(window, 0, Table::Remark), QString());
            QCOMPARE(Current(window), std::pair(2, int{Table::Quantity}));
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Nothing was saved."));
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList({"3 1 lbs"}));
    }

    void What_another_copy_changed_can_be_saved_once_it_is_shown() {
        SheetProgram program;
        QVERIFY(InSheet(program, [&](frmMonthSheet& window) {
            program.AddUsage(3, "3/2005", 1, UnitLbs);
            Type(window, "5\n\n6");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Cell(window, 2, Table::Recorded), QStringLiteral("Yes"));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"5", "", "6"}));
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Saved 2 records of 3/2005."));
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList({"3 6 lbs", "1 5 lbs"}));
    }

    void What_was_typed_stays_if_the_file_cannot_be_written() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        QVERIFY(!InSheet(program, [&](frmMonthSheet& window) {
            std::filesystem::remove(program.DataFile("1_usage.talvor"));
            std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
            Type(window, "5\n");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
            QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::Failure);
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("5"));
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Nothing was saved."));
        }));
    }

    void Rows_left_empty_are_not_stored_and_saving_nothing_says_so() {
        SheetProgram program;
        const std::string before = program.UsageBytes();
        QVERIFY(!InSheet(program, [](frmMonthSheet& window) {
            Press(window, "cmd_Save");
            QCOMPARE(Label(window, "lbl_Saved"),
                     std::string("There is nothing to save: no row says anything new."));
        }));
        QCOMPARE(program.UsageBytes(), before);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void After_a_save_the_rows_say_that_they_are_recorded_and_closing_asks_nothing() {
        SheetProgram program;
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n6");
            Press(window, "cmd_Save");
            QCOMPARE(Column(window, Table::Recorded), QStringList({"Yes", "Yes", ""}));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"5", "6", ""}));
            QCOMPARE(Current(window), std::pair(1, int{Table::Quantity}));
            Type(window, "7");
            Key(window, Qt::Key_Escape); // of the cell: nothing has changed
            Key(window, Qt::Key_Escape);
        }));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Leaving_with_something_typed_asks() {
        for (const bool isByButton : {true, false}) {
            SheetProgram program;
            program.Prompts.Answers = {PromptAnswer::Cancel, PromptAnswer::No};
            QVERIFY(!InSheet(program, [&](frmMonthSheet& window) {
                Type(window, "5"); // still being typed
                if (isByButton)
                    Press(window, "cmd_Close");
                else
                    window.close();
                QVERIFY(window.isVisible());
                QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("5"));
                QCOMPARE(program.Prompts.LastText(),
                         std::string("Do you want to save what was typed for 3/2005? "
                                     "No closes the sheet without saving."));
                QCOMPARE(program.Prompts.Shown.back().Buttons, PromptButtons::YesNoCancel);
                Key(window, Qt::Key_Escape);
                QVERIFY(!window.isVisible());
            }));
            QCOMPARE(program.Stored("3/2005"), QStringList());
        }
    }

    void Leaving_can_save() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n");
            Press(window, "cmd_Close");
            QVERIFY(!window.isVisible());
        }));
        QCOMPARE(program.Stored("3/2005"), QStringList({"1 5 lbs"}));
    }

    void Leaving_by_Yes_stays_if_something_is_wrong() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes, PromptAnswer::No};
        QVERIFY(!InSheet(program, [](frmMonthSheet& window) {
            Type(window, "abc\n");
            Press(window, "cmd_Close");
            QVERIFY(window.isVisible());
            QCOMPARE(Current(window), std::pair(0, int{Table::Quantity}));
        }));
    }

    void Another_month_asks_if_something_was_typed_and_goes_back_on_No() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No, PromptAnswer::Yes};
        InSheet(program, [&](frmMonthSheet& window) {
            Type(window, "5");
            ChooseMonth(window, 4);
            QCOMPARE(program.Prompts.LastText(),
                     std::string("What was typed for 3/2005 has not been saved and would be lost. "
                                 "Do you want to go to 4/2005?"));
            QCOMPARE(program.Prompts.Shown.back().Buttons, PromptButtons::YesNo);
            QCOMPARE(MonthShown(window), QStringLiteral("MAR 2005"));
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("5"));
            ChooseMonth(window, 4);
            QCOMPARE(MonthShown(window), QStringLiteral("APR 2005"));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "", ""}));
            QCOMPARE(Column(window, Table::MonthBefore), QStringList({"", "", ""}));
        });
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{2});
    }

    void The_typed_year_of_another_month_asks_too() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No, PromptAnswer::No};
        InSheet(program, [&](frmMonthSheet& window) {
            Type(window, "5\n");
            Named<QComboBox>(window, "cbo_Year").setEditText(QStringLiteral("2006"));
            QCOMPARE(program.Prompts.Shown.size(), std::size_t{1});
            QCOMPARE(MonthShown(window), QStringLiteral("MAR 2005"));
            QCOMPARE(Cell(window, 0, Table::Quantity), QStringLiteral("5"));
        });
    }

    void What_was_typed_stays_if_the_records_cannot_be_read_after_a_refusal() {
        SheetProgram program;
        UnreadableUsage prompts(program);
        AppContext app{
            prompts,          program.Settings,  program.Programs,          program.Dialogs,
            program.Calendar, program.App.Files, program.App.ProgramFolder, program.App.CurrentCompanyId};
        InNextModal<frmMonthSheet>([&](frmMonthSheet& window) {
            QApplication::setActiveWindow(&window);
            program.AddUsage(3, "3/2005", 1, UnitLbs); // meanwhile, by another copy
            Type(window, "5\n\n6\n");
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(program.Prompts.Shown.size(), std::size_t{2}); // the refusal, and why it cannot be read
            QVERIFY(window.isVisible());
            QCOMPARE(Column(window, Table::Quantity), QStringList({"5", "", "6"}));
            QVERIFY(!Cell(window, 2, Table::Remark).isEmpty());
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Nothing was saved."));
            program.Prompts.Answers = {PromptAnswer::No};
            window.close();
            QVERIFY(!window.isVisible());
        });
        QVERIFY(!ShowMonthSheet(app, nullptr));
    }

    void What_was_typed_for_a_material_that_is_gone_is_named() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        QVERIFY(!InSheet(program, [&](frmMonthSheet& window) {
            Type(window, "5\n\n6\n");
            // Meanwhile, by another copy.
            QVERIFY(DeleteUsage(program.App, 1) == false);
            QVERIFY(DeleteMaterial(program.App, 1, [](std::int16_t) { return false; }) == false);
            Key(window, Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(Column(window, Table::MaterialId), QStringList({"GC-2", "PR-1"}));
            QCOMPARE(Column(window, Table::Quantity), QStringList({"", "6"}));
            QCOMPARE(Named<QPlainTextEdit>(window, "txt_Unmatched").toPlainText(),
                     QStringLiteral("Line 1: GC-1 | 5: There is no material with this Material ID."));
            QCOMPARE(Label(window, "lbl_Saved"), std::string("Nothing was saved."));
        }));
    }

    void A_month_of_32767_rows_is_entered_as_any_other() {
        TestProgram program;
        constexpr std::int16_t most = 32767;
        std::string materials;
        std::string usage;
        for (std::int16_t number = 1; number < most; ++number) {
            materials += Pack(
                MaterialLayout,
                {.MaterialId = number, .CustomId = "X-" + std::to_string(100000 + number), .Density = 10});
            usage += Pack(UsageLayout, {.UsageId = number,
                                        .MaterialId = number,
                                        .Period = "2/2005",
                                        .Quantity = 2,
                                        .Unit = UnitLbs});
        }
        WriteContent(program.DataFile("1_materials.talvor"), materials);
        WriteContent(program.DataFile("1_usage.talvor"), usage);
        program.Prompts.Answers = {PromptAnswer::No};
        InSheet(program, [&](frmMonthSheet& window) {
            QCOMPARE(View(window).model()->rowCount(), int{most}); // with the empty one
            View(window).selectAll();
            Key(window, Qt::Key_D, Qt::ControlModifier);
            View(window).GoTo(most - 2, Table::Quantity);
            Type(window, "7\n"); // in place of 2
            QCOMPARE(Cell(window, most - 2, Table::MaterialId), QStringLiteral("X-132766"));
            QVERIFY(Label(window, "lbl_Sums").starts_with("3/2005 in all: 65537 lbs")); // 32,765 * 2 + 7
        });
    }

    void An_arrow_goes_on_from_the_year_shown() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            auto& year = Named<QComboBox>(window, "cbo_Year");
            QTest::keyClick(&year, Qt::Key_Down);
            QCOMPARE(MonthShown(window), QStringLiteral("MAR 2006"));
            QVERIFY(Label(window, "lbl_Sums").starts_with("3/2006"));
        });
    }

    void Any_year_can_be_typed_and_one_that_is_none_goes_back() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            auto& year = Named<QComboBox>(window, "cbo_Year");
            year.setFocus();
            year.lineEdit()->selectAll();
            QTest::keyClicks(year.lineEdit(), QStringLiteral("2019"));
            QVERIFY(Label(window, "lbl_Sums").starts_with("3/2019"));
            QCOMPARE(year.currentText(), QStringLiteral("2019"));
            QVERIFY(year.hasFocus());
            year.lineEdit()->selectAll();
            QTest::keyClicks(year.lineEdit(), QStringLiteral("189"));
            View(window).setFocus();
            QCOMPARE(year.currentText(), QStringLiteral("2019"));
        });
    }

    void The_sums_follow_what_is_typed() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            QCOMPARE(Label(window, "lbl_Sums"), std::string("3/2005 in all: 0 lbs, 0 kg"));
            Type(window, "220.46\n0.002\n"); // 0.002 Mgal at 9 lb/gal are 18 pounds
            QCOMPARE(Column(window, Table::Pounds), QStringList({"220.46", "18", ""}));
            QCOMPARE(Label(window, "lbl_Sums"), std::string("3/2005 in all: 238.46 lbs, 108.16 kg"));
        });
    }

    void The_sums_say_so_if_a_number_is_too_large() {
        SheetProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "1e308\n\n1e308\n");
            QCOMPARE(Label(window, "lbl_Sums"),
                     std::string("3/2005 in all: no sum, as a number is too large"));
        });
    }

    void Says_what_the_overview_would_say_before_anything_is_stored() {
        SheetProgram program;
        // Two hundred pounds of a resin with 45 % HAP: over its limit of 28, and the only one averaged.
        program.AddUsage(1, "3/2004", 1, UnitLbs); // twelve months before
        if (SaveMaterial(program.App, {.CustomId = "ZZ-9",
                                       .MaterialType = "Production resin",
                                       .ApplicationMethod = "Spray",
                                       .Density = 9,
                                       .HapContent = 45,
                                       .Contents = "0|0|0|0|0|0",
                                       .Factors = "0|0|0|0|0|0"}))
            qFatal("The test's material was not saved");
        InSheet(program, [](frmMonthSheet& window) {
            WaitForOutlook(window);
            QVERIFY(Label(window, "lbl_Outlook").starts_with("As stored, MAR 2005: "));
            Named<SheetView>(window, "tbl_Rows").GoTo(3, Table::MaterialId);
            Type(window, "ZZ-9\n200\tl\n");
            WaitForOutlook(window);
            const std::string said = Label(window, "lbl_Outlook");
            QVERIFY2(said.starts_with("With this sheet, MAR 2005: "), said.c_str());
            QVERIFY2(said.find("\nOver with this sheet, and not now: ") != std::string::npos, said.c_str());
            QVERIFY(Named<QLabel>(window, "lbl_Outlook").font().bold());
        });
    }

    void A_row_with_something_wrong_is_not_counted_in_what_the_overview_would_say() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            WaitForOutlook(window);
            Type(window, "5x\n");
            WaitForOutlook(window);
            QVERIFY(Label(window, "lbl_Outlook").starts_with("As stored, MAR 2005: "));
        });
    }

    void Says_why_the_overview_cannot_be_read() {
        SheetProgram program;
        WriteContent(program.DataFile("1_overview.txt"), "x");
        std::filesystem::remove(program.DataFile("1_overview.txt"));
        std::filesystem::create_directory(program.DataFile("1_overview.txt"));
        InSheet(program, [](frmMonthSheet& window) {
            WaitForOutlook(window);
            const std::string said = Label(window, "lbl_Outlook");
            QVERIFY2(said.starts_with("Cannot ") && said.find("1_overview.txt") != std::string::npos,
                     said.c_str());
        });
    }

    void A_new_record_afterwards_starts_in_the_month_of_the_sheet() {
        SheetProgram program;
        InSheet(program, [](frmMonthSheet& window) {
            Type(window, "5\n6\n");
            Press(window, "cmd_Save");
        });
        InNextModal<frmUsage>([](frmUsage& window) {
            QCOMPARE(MonthShown(window), QStringLiteral("MAR 2005"));
            QCOMPARE(Named<QComboBox>(window, "cbo_Unit").currentIndex(), 0); // Mgal, of the last new one
        });
        NewUsage(program.App, nullptr);
    }

    void An_edited_record_is_not_remembered_for_a_new_one() {
        SheetProgram program;
        QVERIFY(InSheet(program, [](frmMonthSheet& window) {
            ChooseMonth(window, 2);
            Type(window, "5\n");
            Press(window, "cmd_Save");
        }));
        QCOMPARE(program.App.LastUsage.Unit, std::int16_t{0});
    }

    void The_usage_list_opens_it_and_shows_what_was_saved() {
        SheetProgram program;
        InNextModal<frmList>([](frmList& list) {
            QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 3);
            QVERIFY(Named<QPushButton>(list, "cmd_MonthSheet").isVisible());
            InNextModal<frmMonthSheet>([](frmMonthSheet& window) {
                QApplication::setActiveWindow(&window);
                Type(window, "5\n6\n");
                Press(window, "cmd_Save");
            });
            Press(list, "cmd_MonthSheet");
            QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 5);
        });
        ShowUsageList(program.App, nullptr);
    }

    void The_list_of_materials_does_not_offer_it() {
        SheetProgram program;
        InNextModal<frmList>(
            [](frmList& list) { QVERIFY(!Named<QPushButton>(list, "cmd_MonthSheet").isVisible()); });
        ShowMaterialList(program.App, nullptr);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_month_sheet_test)
#include "frm_month_sheet_test.moc"
