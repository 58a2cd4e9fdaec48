#include "dialogs/dialog_routines.h"
#include "dialogs/list_search.h"
#include "dialogs/record_list.h"
#include "tests/support/gui.h"

#include <QDialog>
#include <QTest>
#include <QVBoxLayout>

namespace mact {
namespace {

/// A list of five lines and its search.
struct SearchedList : QDialog {
    SearchedList() {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&List);
        layout->addWidget(&Search);
        Search.Bind(List);
        ShowLines(List, {
                            {"GC-110 - White", 1},
                            {"PR-1 - Caf\xE9", 2},
                            {"GC-121 - Black", 3},
                            {"PR-2",           4},
                            {"GC-9",           5}
        });
        show();
        QApplication::setActiveWindow(this);
        List.setFocus();
    }
    void Find(const char* text) {
        QTest::keyClick(focusWidget(), Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(focusWidget(), QString::fromUtf8(text));
    }
    QString Result() const { return Named<QLabel>(*this, "lbl_Found").text(); }

    RecordList List;
    ListSearch Search;
};

} // namespace

class list_search_test : public QObject {
    Q_OBJECT

private slots:
    void Is_hidden_until_Ctrl_F() {
        SearchedList window;
        QVERIFY(!window.Search.isVisible());
        QTest::keyClick(&window.List, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(window.Search.isVisible());
        QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Find"));
    }

    void Selects_as_one_types_whatever_the_case() {
        SearchedList window;
        window.Find("gc-1");
        QCOMPARE(SelectedRow(window.List), 0);
        QTest::keyClicks(window.focusWidget(), QStringLiteral("2"));
        QCOMPARE(SelectedRow(window.List), 2);
    }

    void Finds_letters_beyond_ASCII_in_the_middle_of_a_line() {
        SearchedList window;
        window.Find("CAF\u00C9");
        QCOMPARE(SelectedRow(window.List), 1);
    }

    void Enter_and_the_arrow_keys_go_on_around_the_end() {
        SearchedList window;
        window.Find("gc-");
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        QCOMPARE(SelectedRow(window.List), 2);
        QTest::keyClick(window.focusWidget(), Qt::Key_Down);
        QCOMPARE(SelectedRow(window.List), 4);
        QTest::keyClick(window.focusWidget(), Qt::Key_Enter);
        QCOMPARE(SelectedRow(window.List), 0);
        QTest::keyClick(window.focusWidget(), Qt::Key_Up);
        QCOMPARE(SelectedRow(window.List), 4);
        QVERIFY(window.isVisible()); // Enter closed nothing
    }

    void What_is_in_no_line_is_said_and_the_selection_stays() {
        SearchedList window;
        window.List.setCurrentRow(3);
        window.Find("PR-3");
        QCOMPARE(window.Result(), QStringLiteral("in no line"));
        QCOMPARE(SelectedRow(window.List), 3);
        QCOMPARE(window.focusWidget()->accessibleDescription(), QStringLiteral("in no line"));
        QTest::keyClick(window.focusWidget(), Qt::Key_Backspace);
        QCOMPARE(window.Result(), QString());
        QCOMPARE(window.focusWidget()->accessibleDescription(), QString());
    }

    void Escape_ends_the_search_and_not_the_window() {
        SearchedList window;
        window.Find("PR-2");
        QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
        QVERIFY(window.isVisible());
        QVERIFY(!window.Search.isVisible());
        QVERIFY(window.List.hasFocus());
        QCOMPARE(SelectedRow(window.List), 3);
    }

    void An_empty_list_has_nothing_to_find() {
        SearchedList window;
        ShowLines(window.List, {});
        window.Find("x");
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        QTest::keyClick(window.focusWidget(), Qt::Key_Up);
        QCOMPARE(window.Result(), QStringLiteral("in no line"));
    }
};
} // namespace mact

QTEST_MAIN(mact::list_search_test)
#include "list_search_test.moc"
