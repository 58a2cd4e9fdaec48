#include "overview/frm_overview_help.h"

#include "overview/answers.h"
#include "overview/overview_csv.h"
#include "overview/statements.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

namespace mact {
namespace {

struct Links {
    QStringList Targets;
    QStringList Anchors;
};

Links LinksOf(const QTextDocument& page) {
    Links links;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            links.Anchors << format.anchorNames();
            if (!format.anchorHref().isEmpty()) links.Targets << format.anchorHref();
        }
    return links;
}

QStringList Headings(const QTextDocument& page) {
    QStringList headings;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next())
        if (block.blockFormat().headingLevel() > 0) headings << block.text();
    return headings;
}

/// The text of a section: up to the next heading.
QString Section(const QTextDocument& page, const QString& heading) {
    QString text;
    bool isInside = false;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0) isInside = block.text() == heading;
        if (isInside) text += block.text() + QLatin1Char('\n');
    }
    return text;
}

} // namespace

class frm_overview_help_test : public QObject {
    Q_OBJECT

    const frmOverviewHelp m_window{nullptr};
    const QTextDocument& Page() const { return *Named<QTextBrowser>(m_window, "txt_Help").document(); }

private slots:
    void Every_link_leads_somewhere_on_the_page() {
        const Links links = LinksOf(Page());
        QVERIFY(links.Targets.size() >= 20);
        for (const QString& target : links.Targets) {
            QVERIFY2(target.startsWith(u'#'), qPrintable(target));
            QVERIFY2(links.Anchors.contains(target.mid(1)), qPrintable(target));
        }
    }

    void Every_section_can_be_reached_from_the_contents() {
        const Links links = LinksOf(Page());
        for (const QString& anchor : links.Anchors)
            QVERIFY2(links.Targets.contains(u'#' + anchor), qPrintable(anchor));
        QCOMPARE(QStringList(links.Anchors).removeDuplicates(), 0);
    }

    void Every_state_has_its_place() {
        const QString text = Page().toPlainText();
        for (const State state :
             {State::Within, State::Over, State::TooEarly, State::NotUsed, State::Differs}) {
            const QString words = QString::fromStdString(StateInWords({.Is = state}, 3));
            bool hasHeading = false;
            for (const QString& heading : Headings(Page()))
                hasHeading = hasHeading || heading.mid(2).startsWith(words.left(9));
            QVERIFY2(hasHeading, qPrintable(words));
            QVERIFY2(text.contains(words), qPrintable(words));
        }
        QVERIFY(Headings(Page()).contains(QStringLiteral("? No answer")));
    }

    void Every_cause_is_explained() {
        const QString text = Page().toPlainText();
        for (const Cause cause : {Cause::Tie, Cause::Filler, Cause::VacuumBagging, Cause::Rounding}) {
            const QString words =
                QString::fromStdString(StateInWords({.Is = State::Differs, .Why = cause}, 12)) + u':';
            QVERIFY2(text.contains(words), qPrintable(words));
        }
    }

    void Every_figure_has_its_place_with_its_rule_and_its_report() {
        const std::pair<const char*, const char*> figures[] = {
            {"Months",                  "63.5710(b)"                                                   },
            {"Every material within",   "63.5713(b)). Report: Compliant Mat"                           },
            {"Content of a row",        "63.5713(c), (d)). Report: Weighted-Average HAP Content Report"},
            {"Filled resin",            "63.5714"                                                      },
            {"Closed molding",          "63.5728"                                                      },
            {"Emissions",               "63.5698(b)). Report: Emission-Average HAP Content Report"     },
            {"Allowance",               "63.5710(b)"                                                   },
            {"Headroom",                "Emission-Average HAP Content Report"                          },
            {"Point value",             "63.5764(c)(5)). Report: Emission-Average HAP Content Report"  },
            {"The month's own amounts", "63.5767(c)(1)"                                                },
        };
        for (const auto& [heading, words] : figures) {
            const QString text = Section(Page(), QString::fromLatin1(heading));
            QVERIFY2(text.contains(QString::fromLatin1(words)), heading);
        }
    }

    void Each_report_is_called_as_the_answers_call_it() {
        const ShopRecords none;
        const ShopFigures shop(none);
        for (const Answer& answer : AnswersOf(shop, shop.At(MonthNumberOf(2005, 12)))) {
            QVERIFY2(Section(Page(), QStringLiteral("The three answers"))
                         .contains(QString::fromStdString(answer.Report)),
                     answer.Report.c_str());
            QVERIFY2(Page().toPlainText().contains(QString::fromStdString(answer.Question)),
                     answer.Question.c_str());
        }
    }

    void Every_column_button_and_key_is_explained() {
        const QString text = Page().toPlainText();
        for (const char* words : {"Type and method",
                                  "Mg used",
                                  "Content",
                                  "Limit",
                                  "80 % to limit",
                                  "Headroom",
                                  "State",
                                  "First trouble",
                                  "Why?",
                                  "What if",
                                  "Reports",
                                  "Half-year pack",
                                  "Print",
                                  "PDF",
                                  "Copy",
                                  "Options",
                                  "F8",
                                  "F1",
                                  "Page Up, Page Down",
                                  "Enter",
                                  "Ctrl+F",
                                  "Escape"})
            QVERIFY2(text.contains(QLatin1Char('\n') + QString::fromLatin1(words) + QLatin1Char('\n')),
                     words);
    }

    void Calls_nothing_compliant_but_the_report() {
        const QString text = Page().toPlainText();
        QCOMPARE(text.count(QLatin1String("compliant"), Qt::CaseInsensitive),
                 text.count(QLatin1String("Compliant Materials Report")));
        QVERIFY(!text.contains(QLatin1String("compliance"), Qt::CaseInsensitive));
    }

    void A_link_scrolls_to_its_section() {
        TestProgram program;
        InNextModal<frmOverviewHelp>([](frmOverviewHelp& window) {
            auto& page = Named<QTextBrowser>(window, "txt_Help");
            page.setSource(QUrl(QStringLiteral("#keys"))); // what a click does
            QVERIFY(page.verticalScrollBar()->value() > page.height());
            QVERIFY(!page.document()->isEmpty());
        });
        ShowOverviewHelp(program.App, nullptr);
    }

    void Tab_goes_from_link_to_link_and_Enter_follows_it() {
        TestProgram program;
        InNextModal<frmOverviewHelp>([](frmOverviewHelp& window) {
            auto& page = Named<QTextBrowser>(window, "txt_Help");
            QVERIFY(QTest::qWaitForWindowActive(&window));
            for (int links = 0; links < 2; ++links)
                QTest::keyClick(&page, Qt::Key_Tab);
            QCOMPARE(page.textCursor().selectedText(), QStringLiteral("The states"));
            QTest::keyClick(&page, Qt::Key_Return);
            QVERIFY(window.isVisible());
            QVERIFY(page.verticalScrollBar()->value() > 0);
            for (int step = 0; step < 100 && page.hasFocus(); ++step)
                QTest::keyClick(&page, Qt::Key_Tab);
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Find"));
        });
        ShowOverviewHelp(program.App, nullptr);
    }

    void Control_F_and_Enter_find_a_word_and_go_on_from_the_top() {
        TestProgram program;
        InNextModal<frmOverviewHelp>([](frmOverviewHelp& window) {
            auto& page = Named<QTextBrowser>(window, "txt_Help");
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QTest::keyClick(window.focusWidget(), Qt::Key_F, Qt::ControlModifier);
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Find"));
            QTest::keyClicks(window.focusWidget(), QStringLiteral("projection"));
            QTest::keyClick(window.focusWidget(), Qt::Key_Return);
            QVERIFY(window.isVisible());
            QCOMPARE(page.textCursor().selectedText(), QStringLiteral("projection"));
            const int place = page.textCursor().position();
            QTest::keyClick(window.focusWidget(), Qt::Key_Return); // the only place
            QCOMPARE(page.textCursor().position(), place);
            QVERIFY(Named<QLabel>(window, "lbl_NotFound").text().isEmpty());
        });
        ShowOverviewHelp(program.App, nullptr);
    }

    void What_is_not_on_the_page_is_said_to_be_missing_until_it_is_changed() {
        TestProgram program;
        InNextModal<frmOverviewHelp>([](frmOverviewHelp& window) {
            Named<QLineEdit>(window, "txt_Find").setText(QStringLiteral("zebra"));
            Named<QPushButton>(window, "cmd_Find").click();
            QCOMPARE(TextOf<QLabel>(window, "lbl_NotFound"), std::string("Not found."));
            Named<QLineEdit>(window, "txt_Find").setText(QStringLiteral("gel"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_NotFound"), std::string());
        });
        ShowOverviewHelp(program.App, nullptr);
    }

    void Close_and_Escape_close_it() {
        for (const bool byKey : {false, true}) {
            TestProgram program;
            InNextModal<frmOverviewHelp>([byKey](frmOverviewHelp& window) {
                QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Help"));
                if (byKey)
                    QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
                else
                    Named<QPushButton>(window, "cmd_Close").click();
                QVERIFY(!window.isVisible());
            });
            ShowOverviewHelp(program.App, nullptr);
        }
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_overview_help_test)
#include "frm_overview_help_test.moc"
