#include "materials/frm_other_pollutants.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

constexpr const char* TwoNames = "MMA|Styrene & Co|-|-| - |-";

QLineEdit& Content(const QWidget& window, int row) {
    return Named<QLineEdit>(window, ("txt_pollcontent_" + std::to_string(row)).c_str());
}

QLineEdit& Factor(const QWidget& window, int row) {
    return Named<QLineEdit>(window, ("txt_pollEFactor_" + std::to_string(row)).c_str());
}

std::string NameIn(const QWidget& window, int row) {
    return TextOf<QLabel>(window, ("lbl_poll_" + std::to_string(row)).c_str());
}

void Type(QLineEdit& edit, const char* text) {
    edit.clear();
    edit.insert(QString::fromUtf8(text));
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

struct PollutantsProgram : TestProgram {
    frmOtherPollutants Window{App, nullptr};

    void Show(const std::function<void(frmOtherPollutants&)>& act) {
        InNextModal<frmOtherPollutants>(act);
        Window.exec();
    }
};

const std::string NotNumeric =
    "Error(s) found while processing the form:\r\n\r\n"
    "- All the values for contents and emission factors should be valid numeric values.\r\n";

} // namespace

class frm_other_pollutants_test : public QObject {
    Q_OBJECT

private slots:
    void Starts_with_zeros() {
        const PollutantsProgram program;
        QCOMPARE(program.Window.windowTitle(), QStringLiteral("Additional Pollutants"));
        QCOMPARE(TextOf<QLabel>(program.Window, "lbl_Content"), std::string("Content(w%)"));
        QCOMPARE(TextOf<QLabel>(program.Window, "lbl_EFactor"), std::string("Emission Factor"));
        for (int row = 0; row < 6; ++row) {
            QCOMPARE(Content(program.Window, row).text(), QStringLiteral("0"));
            QCOMPARE(Factor(program.Window, row).text(), QStringLiteral("0"));
        }
    }

    void Six_names_name_the_rows_and_disable_those_not_in_use() {
        PollutantsProgram program;
        QVERIFY(program.Window.SetNames(TwoNames));
        QCOMPARE(NameIn(program.Window, 0), std::string("MMA"));
        QCOMPARE(NameIn(program.Window, 1), std::string("Styrene & Co"));
        QCOMPARE(NameIn(program.Window, 4), std::string(" - "));
        for (int row = 0; row < 6; ++row) {
            QCOMPARE(Content(program.Window, row).isEnabled(), row < 2);
            QCOMPARE(Factor(program.Window, row).isEnabled(), row < 2);
        }
    }

    void Another_number_of_names_changes_nothing() {
        for (const char* names : {"", "a|b|c|d|e", "a|b|c|d|e|f|g"}) {
            PollutantsProgram program;
            QVERIFY(!program.Window.SetNames(names));
            QCOMPARE(NameIn(program.Window, 0), std::string("Poll &1 :"));
            QVERIFY(Content(program.Window, 5).isEnabled());
        }
    }

    void A_row_that_comes_into_use_is_enabled() {
        PollutantsProgram program;
        program.Window.SetNames("-|-|-|-|-|-");
        program.Window.SetNames(TwoNames);
        QVERIFY(Content(program.Window, 0).isEnabled() && Factor(program.Window, 1).isEnabled());
    }

    void Screen_readers_are_told_the_names() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        QCOMPARE(Content(program.Window, 0).accessibleName(), QStringLiteral("Content of MMA"));
        QCOMPARE(Factor(program.Window, 1).accessibleName(),
                 QStringLiteral("Emission factor of Styrene & Co"));
    }

    void A_disabled_row_has_the_background_of_the_window_in_light_and_dark() {
        const QPalette normal = QApplication::palette();
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        for (const QColor& window : {QColor(240, 240, 240), QColor(40, 42, 46)}) {
            const QColor base = window.darker();
            QPalette palette = normal;
            palette.setColor(QPalette::Window, window);
            palette.setColor(QPalette::Base, base);
            QApplication::setPalette(palette);
            QCoreApplication::processEvents(); // delivers the change
            QCOMPARE(Content(program.Window, 2).palette().color(QPalette::Base), window);
            QCOMPARE(Factor(program.Window, 2).palette().color(QPalette::Base), window);
            QCOMPARE(Content(program.Window, 0).palette().color(QPalette::Base), base);
        }
        QApplication::setPalette(normal);
    }

    void Shows_a_materials_values_as_plain_numbers() {
        PollutantsProgram program;
        program.Window.SetValues({.Content1 = 0.1 + 0.2, .Factor1 = 50, .Factor6 = 1e-5});
        QCOMPARE(Content(program.Window, 0).text(), QStringLiteral("0.3"));
        QCOMPARE(Factor(program.Window, 0).text(), QStringLiteral("50"));
        QCOMPARE(Content(program.Window, 5).text(), QStringLiteral("0"));
        QCOMPARE(Factor(program.Window, 5).text(), QStringLiteral("1E-05"));
    }

    void OK_closes_and_keeps_the_values() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        program.Show([](frmOtherPollutants& window) {
            Type(Content(window, 0), "2.5");
            Type(Factor(window, 1), " 75 ");
            Press(window, "cmd_OK");
            QVERIFY(!window.isVisible());
        });
        QVERIFY(program.Prompts.Shown.empty());
        QCOMPARE(Content(program.Window, 0).text(), QStringLiteral("2.5"));
        QCOMPARE(program.Window.Values()[1].Factor, std::string(" 75 "));
    }

    void An_empty_content_is_refused() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        program.Show([](frmOtherPollutants& window) {
            Content(window, 1).clear();
            Press(window, "cmd_OK");
            QVERIFY(window.isVisible());
            QCOMPARE(window.focusWidget(), &Content(window, 1));
        });
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{NotNumeric});
    }

    void A_factor_that_is_no_number_is_refused() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        program.Show([](frmOtherPollutants& window) {
            Type(Factor(window, 0), "1,5");
            Press(window, "cmd_OK");
            QVERIFY(window.isVisible());
            QCOMPARE(window.focusWidget(), &Factor(window, 0));
        });
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{NotNumeric});
    }

    void Many_faults_are_one_message() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        for (int row = 0; row < 2; ++row) {
            Type(Content(program.Window, row), "x");
            Type(Factor(program.Window, row), "");
        }
        QVERIFY(!program.Window.Validate_Form());
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{NotNumeric});
    }

    void A_disabled_row_is_not_checked_and_keeps_its_zeros() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        Content(program.Window, 3).clear();
        QVERIFY(program.Window.Validate_Form());
        QCOMPARE(program.Window.Values()[2].Content, std::string("0"));
        QCOMPARE(program.Window.Values()[2].Factor, std::string("0"));
    }

    void Cancel_Escape_and_closing_put_the_values_back() {
        for (const int way : {0, 1, 2}) {
            PollutantsProgram program;
            program.Window.SetNames(TwoNames);
            Type(Content(program.Window, 0), "2");
            program.Show([way](frmOtherPollutants& window) {
                Type(Content(window, 0), "nonsense");
                Type(Factor(window, 1), "9");
                if (way == 0) Press(window, "cmd_Cancel");
                if (way == 1) QTest::keyClick(&Content(window, 0), Qt::Key_Escape);
                if (way == 2) window.close();
                QVERIFY(!window.isVisible());
            });
            QCOMPARE(Content(program.Window, 0).text(), QStringLiteral("2"));
            QCOMPARE(Factor(program.Window, 1).text(), QStringLiteral("0"));
            QVERIFY(program.Prompts.Shown.empty());
        }
    }

    void Cancelling_the_second_time_keeps_what_OK_took_the_first_time() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        program.Show([](frmOtherPollutants& window) {
            Type(Content(window, 0), "5");
            Press(window, "cmd_OK");
        });
        program.Show([](frmOtherPollutants& window) {
            Type(Content(window, 0), "6");
            Press(window, "cmd_Cancel");
        });
        QCOMPARE(Content(program.Window, 0).text(), QStringLiteral("5"));
    }

    void Enter_presses_OK() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        program.Show([](frmOtherPollutants& window) {
            Type(Content(window, 0), "5");
            QTest::keyClick(&Content(window, 0), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(Content(program.Window, 0).text(), QStringLiteral("5"));
    }

    void Starts_in_the_first_row_that_is_in_use_and_tabs_from_row_to_row() {
        PollutantsProgram program;
        program.Window.SetNames("-|MMA|-|Styrene|-|-");
        program.Show([](frmOtherPollutants& window) {
            for (const char* name : {"txt_pollcontent_1", "txt_pollEFactor_1", "txt_pollcontent_3",
                                     "txt_pollEFactor_3", "cmd_OK", "cmd_Cancel"}) {
                QCOMPARE(window.focusWidget()->objectName(), QString::fromLatin1(name));
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            }
        });
    }

    void A_rows_number_leads_to_it() {
        PollutantsProgram program;
        program.Window.SetNames(TwoNames);
        for (int row = 0; row < 6; ++row) {
            const auto& number = Named<QLabel>(program.Window, ("lbl_number_" + std::to_string(row)).c_str());
            QCOMPARE(number.text(), u'&' + QString::number(row + 1));
            QCOMPARE(number.buddy(), &Content(program.Window, row));
        }
    }

    void A_character_that_the_code_page_lacks_is_shown_as_a_question_mark() {
        const PollutantsProgram program;
        for (int row = 0; row < 6; ++row) {
            Type(Content(program.Window, row), "1\u0141");
            Type(Factor(program.Window, row), "\u0141");
            QCOMPARE(Content(program.Window, row).text(), QStringLiteral("1?"));
            QCOMPARE(Factor(program.Window, row).text(), QStringLiteral("?"));
        }
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_other_pollutants_test)
#include "frm_other_pollutants_test.moc"
