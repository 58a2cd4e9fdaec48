#include "dialogs/dialog_routines.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace mact {
namespace {

const ListLines ThreeLines{
    {"JAN",       1},
    {" Feb ",     2},
    {"\xC9t\xE9", 7}
};

void Type(QLineEdit& edit, const QString& text) {
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(character));
        QApplication::sendEvent(&edit, &press);
    }
}

void Paste(QLineEdit& edit, const QString& text) {
    edit.insert(text);
}

} // namespace

class dialog_routines_test : public QObject {
    Q_OBJECT

private slots:
    void A_tool_tip_shows_its_text_as_it_is() {
        const QString toolTip = ToolTipOf(QStringLiteral("\"A & <b>B</b>\"\nsecond"));
        QVERIFY(Qt::mightBeRichText(toolTip)); // else the signs below would be shown
        QCOMPARE(toolTip, QStringLiteral("<qt>&quot;A &amp; &lt;b&gt;B&lt;/b&gt;&quot;<br>second"));
    }

    void Lines_are_shown_with_their_item_data_and_none_selected() {
        QListWidget list;
        ShowLines(list, ThreeLines);
        QCOMPARE(list.count(), 3);
        QCOMPARE(list.item(2)->text(), QStringLiteral("\u00C9t\u00E9"));
        QCOMPARE(list.item(2)->data(Qt::UserRole).toInt(), 7);
        QCOMPARE(SelectedRow(list), -1);
        QComboBox combo;
        ShowLines(combo, ThreeLines);
        QCOMPARE(combo.count(), 3);
        QCOMPARE(combo.itemText(1), QStringLiteral(" Feb "));
        QCOMPARE(combo.itemData(1).toInt(), 2);
        QCOMPARE(combo.currentIndex(), -1);
    }

    void Lines_replace_those_before() {
        QListWidget list;
        QComboBox combo;
        ShowLines(list, ThreeLines);
        ShowLines(combo, ThreeLines);
        ShowLines(list, {});
        ShowLines(combo, {
                             {"x", 9}
        });
        QCOMPARE(list.count(), 0);
        QCOMPARE(combo.count(), 1);
    }

    void A_full_file_of_lines_is_listed_without_measuring_each() {
        QListWidget list;
        ShowLines(list, ListLines(32767, {"GC-100 - White gel coat", 1}));
        QCOMPARE(list.count(), 32767);
        QVERIFY(list.uniformItemSizes());
    }

    void A_line_that_is_too_long_can_be_scrolled_to_its_end() {
        QListWidget list;
        list.resize(200, 100);
        ShowLines(list, {
                            {"short",         1   },
                            {std::string(200, 'm'), 2},
                            {"short",               3            }
        });
        list.show();
        QVERIFY(list.horizontalScrollBar()->maximum() > 0);
        QVERIFY(list.visualItemRect(list.item(1)).width() >
                list.fontMetrics().horizontalAdvance(QString(200, u'm')));
    }

    void Select_without_value_takes_the_first_line() {
        QListWidget list;
        ShowLines(list, ThreeLines);
        SelectListItem(list);
        QCOMPARE(SelectedRow(list), 0);
    }

    void Select_on_an_empty_list_without_value_selects_none() {
        QListWidget list;
        SelectListItem(list);
        QCOMPARE(SelectedRow(list), -1);
        QComboBox combo;
        SelectListItem(combo);
        QCOMPARE(combo.currentIndex(), -1);
    }

    void Select_by_an_absent_value_leaves_the_selection() {
        QListWidget list;
        ShowLines(list, ThreeLines);
        list.setCurrentRow(1);
        SelectListItem(list, 12);
        QCOMPARE(SelectedRow(list), 1);
        SelectListItem(list, QStringLiteral("DEC"), false);
        QCOMPARE(SelectedRow(list), 1);
        SelectListItem(list, QStringLiteral("no number"));
        QCOMPARE(SelectedRow(list), 1);
    }

    void Select_by_item_data_takes_the_first_that_equals() {
        QComboBox combo;
        ShowLines(combo, {
                             {"a", 5},
                             {"b", 7},
                             {"c", 7}
        });
        SelectListItem(combo, 7);
        QCOMPARE(combo.currentIndex(), 1);
        SelectListItem(combo, QStringLiteral("5"));
        QCOMPARE(combo.currentIndex(), 0);
    }

    void Select_by_text_ignores_case_and_the_spaces_around() {
        QListWidget list;
        ShowLines(list, ThreeLines);
        SelectListItem(list, QStringLiteral("  feb"), false);
        QCOMPARE(SelectedRow(list), 1);
        SelectListItem(list, QStringLiteral("\u00C9T\u00C9 "), false);
        QCOMPARE(SelectedRow(list), 2);
    }

    void An_arrow_key_selects_the_line_that_has_the_focus() {
        QListWidget list;
        SelectByKeys(list);
        ShowLines(list, ThreeLines);
        list.setCurrentRow(1, QItemSelectionModel::NoUpdate);
        QTest::keyClick(&list, Qt::Key_Down);
        QCOMPARE(SelectedRow(list), 1);
        QTest::keyClick(&list, Qt::Key_Down);
        QCOMPARE(SelectedRow(list), 2);
    }

    void An_arrow_key_selects_an_only_line() {
        QListWidget list;
        SelectByKeys(list);
        ShowLines(list, {
                            {"only", 1}
        });
        QTest::keyClick(&list, Qt::Key_Up);
        QCOMPARE(SelectedRow(list), 0);
    }

    void Keys_that_go_far_select_a_line_also_where_they_stay() {
        for (const auto& [key, from, to] : {
                 std::tuple{Qt::Key_Home,     0, 0},
                 {Qt::Key_Home,     2, 0},
                 {Qt::Key_End,      2, 2},
                 {Qt::Key_End,      0, 2},
                 {Qt::Key_PageUp,   0, 0},
                 {Qt::Key_PageDown, 2, 2}
        }) {
            QListWidget list;
            SelectByKeys(list);
            ShowLines(list, ThreeLines);
            list.setCurrentRow(from, QItemSelectionModel::NoUpdate);
            QTest::keyClick(&list, key);
            QCOMPARE(SelectedRow(list), to);
        }
    }

    void An_arrow_key_in_an_empty_list_selects_nothing() {
        QListWidget list;
        SelectByKeys(list);
        QTest::keyClick(&list, Qt::Key_Down);
        QCOMPARE(SelectedRow(list), -1);
    }

    void Buttons_without_a_selected_line() {
        QDialog window;
        QPushButton first(&window), second(&window), selection(&window), other(&window);
        QListWidget list(&window);
        first.setEnabled(false);
        second.setEnabled(false);
        selection.setDefault(true);
        SetListButtons(&first, &second, &selection, &other, &list);
        QVERIFY(first.isEnabled() && second.isEnabled());
        QVERIFY(first.isDefault());
        QVERIFY(!selection.isEnabled() && !selection.isDefault());
        QVERIFY(!other.isEnabled());
    }

    void Buttons_with_a_selected_line() {
        QDialog window;
        QPushButton first(&window), second(&window), selection(&window), other(&window);
        QListWidget list(&window);
        ShowLines(list, ThreeLines);
        SelectListItem(list);
        SetListButtons(&first, &second, &selection, &other, &list);
        QVERIFY(selection.isEnabled() && selection.isDefault());
        QVERIFY(other.isEnabled());
        QVERIFY(!first.isDefault());
    }

    void Buttons_that_are_left_out_stay_as_they_are() {
        QDialog window;
        QPushButton selection(&window);
        selection.setEnabled(false);
        SetListButtons(nullptr, nullptr, &selection, nullptr, nullptr);
        QVERIFY(!selection.isEnabled());
    }

    void A_character_that_the_code_page_lacks_becomes_a_question_mark_where_it_is_typed() {
        QLineEdit edit;
        AcceptCodePageText(edit);
        edit.setText(QStringLiteral("ab"));
        edit.setCursorPosition(1);
        Type(edit, QStringLiteral("\u0141\u00E9"));
        QCOMPARE(edit.text(), QStringLiteral("a?\u00E9b"));
        QCOMPARE(edit.cursorPosition(), 3);
    }

    void A_pasted_character_of_two_code_units_is_one_question_mark() {
        QLineEdit edit;
        AcceptCodePageText(edit);
        edit.setText(QStringLiteral("ab"));
        edit.setCursorPosition(1);
        Paste(edit, QStringLiteral("\U0001F6A4x"));
        QCOMPARE(edit.text(), QStringLiteral("a?xb"));
        QCOMPARE(edit.cursorPosition(), 3);
    }

    void A_size_that_the_user_gave_comes_back() {
        TestProgram program;
        {
            QDialog window;
            window.setObjectName(QStringLiteral("frmTest"));
            window.resize(300, 200);
            InNextModal<QDialog>([](QDialog& shown) { shown.resize(410, 320); });
            ShowModally(program.App, window);
        }
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        window.resize(300, 200);
        QSize size;
        InNextModal<QDialog>([&size](QDialog& shown) { size = shown.size(); });
        ShowModally(program.App, window);
        QCOMPARE(size, QSize(410, 320));
    }

    void A_size_that_the_user_left_alone_is_not_kept() {
        TestProgram program;
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        InNextModal<QDialog>([](QDialog&) {});
        ShowModally(program.App, window);
        QVERIFY(program.Settings.Values.empty());
    }

    void A_size_that_a_longer_text_asks_for_is_not_kept() {
        TestProgram program;
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        QVBoxLayout layout(&window);
        QLabel hint(&window);
        layout.addWidget(&hint);
        window.resize(300, 40);
        int growth = 0;
        InNextModal<QDialog>([&hint, &growth](QDialog& shown) {
            const int height = shown.height();
            hint.setText(QStringLiteral("one\ntwo\nthree\nfour\nfive"));
            QCoreApplication::processEvents();
            growth = shown.height() - height;
        });
        ShowModally(program.App, window);
        QVERIFY(growth > 0);
        QVERIFY(program.Settings.Values.empty());
    }

    void A_kept_size_never_exceeds_the_screen() {
        TestProgram program;
        program.Settings.Values[{"WINDOWS", "frmTest"}] = "30000x20000";
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        QSize size;
        InNextModal<QDialog>([&size](QDialog& shown) { size = shown.size(); });
        ShowModally(program.App, window);
        const QSize screen = window.screen()->availableSize();
        QVERIFY(size.width() <= screen.width() && size.height() <= screen.height());
    }

    void A_pasted_line_break_or_tab_becomes_a_space() {
        QLineEdit edit;
        AcceptCodePageText(edit);
        Paste(edit, QStringLiteral("a\r\nb\nc\td\u2028e"));
        QCOMPARE(edit.text(), QStringLiteral("a b c d e"));
    }

    void A_year_box_takes_a_year_that_its_list_lacks() {
        QComboBox year;
        year.addItems({QStringLiteral("2000"), QStringLiteral("2001")});
        AcceptAnyYear(year);
        year.setCurrentIndex(-1);
        Type(*year.lineEdit(), QStringLiteral("20a26"));
        QCOMPARE(year.currentText(), QStringLiteral("2026"));
        QCOMPARE(year.count(), 2);
        Type(*year.lineEdit(), QStringLiteral("7"));
        QCOMPARE(year.currentText(), QStringLiteral("2026"));
    }

    void A_disabled_box_follows_the_background_of_its_window() {
        const QPalette normal = QApplication::palette();
        QDialog window;
        QLineEdit box(&window);
        ShowDisabledInWindowColour(box);
        for (const QColor& background : {QColor(240, 240, 240), QColor(40, 42, 46)}) {
            QPalette palette = normal;
            palette.setColor(QPalette::Window, background);
            palette.setColor(QPalette::Base, background.darker());
            QApplication::setPalette(palette);
            QCoreApplication::processEvents(); // delivers the change
            box.setEnabled(false);
            QCOMPARE(box.palette().color(QPalette::Base), background);
            box.setEnabled(true);
            QCOMPARE(box.palette().color(QPalette::Base), background.darker());
        }
        QApplication::setPalette(normal);
    }

    void The_wheel_changes_a_choice_only_where_the_keyboard_is() {
        TestProgram program;
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        QComboBox first(&window);
        QComboBox second(&window);
        for (QComboBox* combo : {&first, &second})
            combo->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        InNextModal<QDialog>([&](QDialog&) {
            QApplication::setActiveWindow(&window);
            first.setFocus();
            for (QComboBox* combo : {&first, &second}) {
                QWheelEvent down(QPointF(2, 2), combo->mapToGlobal(QPointF(2, 2)), {}, QPoint(0, -120),
                                 Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
                QApplication::sendEvent(combo, &down);
            }
        });
        ShowModally(program.App, window);
        QCOMPARE(first.currentIndex(), 1);
        QCOMPARE(second.currentIndex(), 0);
    }

    void An_editor_tells_its_result_or_minus_one() {
        QLabel result;
        QCOMPARE(ResultOf(result), -1);
        result.setText(QStringLiteral("0"));
        QCOMPARE(ResultOf(result), 0);
    }

    void An_Enter_key_that_is_held_down_presses_once() {
        TestProgram program;
        QDialog window;
        QPushButton first(&window), second(&window);
        first.setDefault(true);
        second.setAutoDefault(false);
        QSignalSpy presses(&second, &QPushButton::clicked);
        InNextModal<QDialog>([&](QDialog&) {
            for (const bool isRepeated : {false, true, true}) {
                QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, {}, {}, isRepeated);
                QApplication::sendEvent(&second, &key);
            }
        });
        QSignalSpy defaultPresses(&first, &QPushButton::clicked);
        ShowModally(program.App, window);
        QCOMPARE(presses.size(), 1);
        QCOMPARE(defaultPresses.size(), 0);
    }

    void Of_a_maximised_window_the_size_before_is_kept() {
        TestProgram program;
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        window.resize(300, 200);
        InNextModal<QDialog>([](QDialog& shown) {
            shown.resize(410, 320);
            shown.showMaximized();
            QTRY_VERIFY(shown.size() != QSize(410, 320));
        });
        ShowModally(program.App, window);
        const std::map<std::pair<std::string, std::string>, std::string> kept{
            {{"WINDOWS", "frmTest"}, "410x320"}
        };
        QVERIFY(program.Settings.Values == kept);
    }

    void A_kept_size_that_makes_no_sense_is_ignored() {
        TestProgram program;
        program.Settings.Values[{"WINDOWS", "frmTest"}] = "wide";
        QDialog window;
        window.setObjectName(QStringLiteral("frmTest"));
        window.resize(300, 200);
        QSize size;
        InNextModal<QDialog>([&size](QDialog& shown) { size = shown.size(); });
        ShowModally(program.App, window);
        QCOMPARE(size, QSize(300, 200));
    }
};
} // namespace mact

QTEST_MAIN(mact::dialog_routines_test)
#include "dialog_routines_test.moc"
