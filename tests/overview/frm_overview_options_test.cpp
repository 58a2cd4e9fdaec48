#include "overview/frm_overview_options.h"

#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "tests/support/limited_files.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <functional>

namespace mact {
namespace {

constexpr const char* OptionBoxes[] = {"cbo_ProductionResin", "cbo_PigmentedGelCoat", "cbo_ClearGelCoat",
                                       "cbo_ToolingResin", "cbo_ToolingGelCoat"};

struct OptionsProgram : TestProgram {
    OptionsProgram() { WriteContent(DataFile("1_usage.talvor"), "not read here"); }
    std::filesystem::path File = DataFile("1_overview.txt");

    /// Whether they were saved.
    bool Edit(const std::function<void(frmOverviewOptions&)>& act) {
        InNextModal<frmOverviewOptions>(act);
        return EditOverviewOptions(App, nullptr);
    }
    std::map<std::string, std::string> DataFiles() const { return FilesIn(App.ProgramFolder / "data"); }
};

void Type(const QWidget& window, const char* edit, const char* text) {
    auto& box = Named<QLineEdit>(window, edit);
    box.selectAll();
    QTest::keyClicks(&box, QString::fromUtf8(text));
}

void Choose(const QWidget& window, const char* combo, const char* text) {
    auto& box = Named<QComboBox>(window, combo);
    box.setCurrentIndex(box.findText(QString::fromLatin1(text)));
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

std::string Chosen(const QWidget& window, const char* combo) {
    return Named<QComboBox>(window, combo).currentText().toStdString();
}

} // namespace

class frm_overview_options_test : public QObject {
    Q_OBJECT

private slots:
    void Opens_with_the_defaults_and_creates_no_file() {
        OptionsProgram program;
        const bool isSaved = program.Edit([](frmOverviewOptions& window) {
            QCOMPARE(Chosen(window, "cbo_StartMonth"), "The first month with a record");
            QCOMPARE(Chosen(window, "cbo_StartYear"), "");
            QVERIFY(!Named<QComboBox>(window, "cbo_StartYear").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnHeadroom"), "5");
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnContent"), "0.5");
            for (const char* box : OptionBoxes)
                QCOMPARE(Chosen(window, box), "Not chosen");
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Address"), "");
            QVERIFY(!Named<QLabel>(window, "lbl_NotUnderstood").isVisible());
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_StartMonth"));
        });
        QVERIFY(!isSaved);
        QVERIFY(!std::filesystem::exists(program.File));
    }

    void Shows_what_is_kept() {
        OptionsProgram program;
        WriteContent(program.File, "start=12/1999\r\nwarn_headroom=7.5\r\nwarn_content=0.25\r\n"
                                   "option.production resin=average\r\noption.pigmented gel coat=table2\r\n"
                                   "option.clear gel coat=filled\r\noption.tooling resin=closed\r\n"
                                   "option.tooling gel coat=not used\r\naddress=3 Quay \xC5\x81\r\n");
        program.Edit([](frmOverviewOptions& window) {
            QCOMPARE(Chosen(window, "cbo_StartMonth"), "DEC");
            QCOMPARE(Chosen(window, "cbo_StartYear"), "1999");
            QVERIFY(Named<QComboBox>(window, "cbo_StartYear").isEnabled());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnHeadroom"), "7.5");
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnContent"), "0.25");
            QCOMPARE(Chosen(window, "cbo_ProductionResin"), "Emission average");
            QCOMPARE(Chosen(window, "cbo_PigmentedGelCoat"), "Table 2 weighted content");
            QCOMPARE(Chosen(window, "cbo_ClearGelCoat"), "Filled resin");
            QCOMPARE(Chosen(window, "cbo_ToolingResin"), "Closed molding");
            QCOMPARE(Chosen(window, "cbo_ToolingGelCoat"), "Not used");
            QCOMPARE(TextOf<QLineEdit>(window, "txt_Address"), "3 Quay \xC5\x81");
        });
    }

    void Save_changes_the_companys_file_alone() {
        OptionsProgram program;
        const bool isSaved = program.Edit([](frmOverviewOptions& window) {
            Choose(window, "cbo_StartMonth", "MAR");
            Type(window, "txt_WarnHeadroom", "7.5");
            Type(window, "txt_WarnContent", "1");
            Choose(window, "cbo_ProductionResin", "Emission average");
            Choose(window, "cbo_PigmentedGelCoat", "Table 2 weighted content");
            Choose(window, "cbo_ClearGelCoat", "Filled resin");
            Choose(window, "cbo_ToolingResin", "Closed molding");
            Choose(window, "cbo_ToolingGelCoat", "Not used");
            Named<QComboBox>(window, "cbo_StartYear").setEditText(QStringLiteral("2005"));
            Named<QLineEdit>(window, "txt_Address").setText(QStringLiteral("3 Quay \u0141"));
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
        });
        QVERIFY(isSaved);
        QCOMPARE(program.DataFiles(),
                 (std::map<std::string, std::string>{
                     {"1_overview.txt", "start=3/2005\r\nwarn_headroom=7.5\r\nwarn_content=1\r\n"
                                        "option.production resin=average\r\n"
                                        "option.pigmented gel coat=table2\r\n"
                                        "option.clear gel coat=filled\r\noption.tooling resin=closed\r\n"
                                        "option.tooling gel coat=not used\r\naddress=3 Quay \xC5\x81\r\n"},
                     {"1_usage.talvor", "not read here"                                                                                         }
        }));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Enter_saves() {
        OptionsProgram program;
        QVERIFY(program.Edit([](frmOverviewOptions& window) {
            Type(window, "txt_WarnHeadroom", "10");
            QTest::keyClick(&Named<QLineEdit>(window, "txt_WarnHeadroom"), Qt::Key_Return);
        }));
        QCOMPARE(ContentOf(program.File), "warn_headroom=10\r\nwarn_content=0.5\r\n");
    }

    void What_is_not_changed_stays_and_so_do_lines_of_a_later_version() {
        OptionsProgram program;
        WriteContent(program.File, "color=blue\r\nwarn_content=0.25\r\nstart=3/2005\r\n# a note\r\n"
                                   "option.tooling resin=closed\r\naddress=a \xFF b\r\n"); // no UTF-8
        program.Edit([](frmOverviewOptions& window) {
            Type(window, "txt_WarnHeadroom", "6");
            Press(window, "cmd_Save");
        });
        QCOMPARE(ContentOf(program.File), "start=3/2005\r\nwarn_headroom=6\r\nwarn_content=0.25\r\n"
                                          "option.tooling resin=closed\r\naddress=a \xFF b\r\n"
                                          "color=blue\r\n# a note\r\n");
    }

    void An_address_that_is_longer_than_its_box_stays_whole() {
        OptionsProgram program;
        const std::string address(40000, 'x');
        WriteContent(program.File, "address=" + address);
        program.Edit([](frmOverviewOptions& window) {
            QVERIFY(window.width() <= 960);
            Press(window, "cmd_Save");
        });
        QCOMPARE(ContentOf(program.File),
                 "warn_headroom=5\r\nwarn_content=0.5\r\naddress=" + address + "\r\n");
    }

    void The_first_month_with_a_record_takes_the_start_away() {
        OptionsProgram program;
        WriteContent(program.File, "start=3/2005\r\n");
        program.Edit([](frmOverviewOptions& window) {
            QTest::keyClick(&Named<QComboBox>(window, "cbo_StartMonth"), Qt::Key_Home);
            QVERIFY(!Named<QComboBox>(window, "cbo_StartYear").isEnabled());
            Press(window, "cmd_Save");
        });
        QCOMPARE(ContentOf(program.File), "warn_headroom=5\r\nwarn_content=0.5\r\n");
    }

    void Cancel_and_Escape_save_nothing() {
        OptionsProgram program;
        WriteContent(program.File, "start=3/2005\r\n");
        QVERIFY(!program.Edit([](frmOverviewOptions& window) {
            Type(window, "txt_WarnHeadroom", "6");
            Press(window, "cmd_Cancel");
        }));
        QVERIFY(!program.Edit([](frmOverviewOptions& window) {
            Type(window, "txt_WarnHeadroom", "6");
            QTest::keyClick(&window, Qt::Key_Escape);
        }));
        QCOMPARE(ContentOf(program.File), "start=3/2005\r\n");
    }

    void Wrong_entries_are_told_together_and_stay() {
        OptionsProgram program;
        const bool isSaved = program.Edit([&](frmOverviewOptions& window) {
            Choose(window, "cbo_StartMonth", "MAR");
            Named<QComboBox>(window, "cbo_StartYear").setEditText(QStringLiteral("189"));
            Type(window, "txt_WarnHeadroom", "0,5");
            Type(window, "txt_WarnContent", "101");
            Named<QLineEdit>(window, "txt_Address").setText(QStringLiteral("3 Quay\nPort Ellery"));
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(Chosen(window, "cbo_StartYear"), "189");
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnHeadroom"), "0,5");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("cbo_StartYear"));
        });
        QVERIFY(!isSaved);
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{
                     "Error(s) found while processing the form:\r\n\r\n"
                     "- The start month needs a month and a year from 1900 to 9999.\r\n"
                     "- The headroom to warn of must be a number from 0 to 100, as in 7.5.\r\n"
                     "- The content to warn of must be a number from 0 to 100, as in 0.5.\r\n"
                     "- The address must be one line, without tabs.\r\n"});
        QVERIFY(program.Prompts.Shown.front().Kind == PromptKind::FormErrors);
        QVERIFY(!std::filesystem::exists(program.File));
    }

    void The_first_wrong_entry_gets_the_focus() {
        OptionsProgram program;
        program.Edit([](frmOverviewOptions& window) {
            Type(window, "txt_WarnContent", "much");
            Named<QLineEdit>(window, "txt_Address").setText(QStringLiteral("a\tb"));
            Press(window, "cmd_Save");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_WarnContent"));
            Type(window, "txt_WarnContent", "1");
            Press(window, "cmd_Save");
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_Address"));
        });
    }

    void The_locale_decides_nothing() {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German));
        OptionsProgram program;
        program.Edit([](frmOverviewOptions& window) {
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnContent"), "0.5");
            Type(window, "txt_WarnContent", "0.75");
            Press(window, "cmd_Save");
        });
        QLocale::setDefault(before);
        QCOMPARE(ContentOf(program.File), "warn_headroom=5\r\nwarn_content=0.75\r\n");
    }

    void What_is_not_understood_is_said_in_the_window() {
        OptionsProgram program;
        WriteContent(program.File, "start=03/2005\r\n");
        program.Edit([](frmOverviewOptions& window) {
            QVERIFY(Named<QLabel>(window, "lbl_NotUnderstood").isVisible());
            QCOMPARE(TextOf<QLabel>(window, "lbl_NotUnderstood"),
                     "The line \"start=03/2005\" of 1_overview.txt is not understood and counts as not set.\n"
                     "Saving writes the file without what is not understood.");
        });
        QVERIFY(program.Prompts.Shown.empty());
        QCOMPARE(ContentOf(program.File), "start=03/2005\r\n");
    }

    void Of_many_lines_that_are_not_understood_five_are_shown() {
        OptionsProgram program;
        std::string content;
        for (int line = 0; line < 7; ++line)
            content += "start=x" + std::to_string(line) + "\r\n";
        WriteContent(program.File, content);
        program.Edit([](frmOverviewOptions& window) {
            const std::string text = TextOf<QLabel>(window, "lbl_NotUnderstood");
            QVERIFY(text.find("start=x4") != std::string::npos);
            QVERIFY(text.find("start=x5") == std::string::npos);
            QVERIFY(text.find("\nLines not understood besides these: 2.\n") != std::string::npos);
        });
    }

    void A_file_that_cannot_be_read_is_told_and_not_edited() {
        OptionsProgram program;
        std::filesystem::create_directory(program.File);
        QVERIFY(!EditOverviewOptions(program.App, nullptr));
        QCOMPARE(program.Prompts.Shown.size(), 1u);
        QVERIFY(program.Prompts.Shown.front().Kind == PromptKind::Failure);
    }

    void A_file_that_cannot_be_saved_is_told_and_nothing_is_lost() {
        OptionsProgram program;
        WriteContent(program.File, "start=3/2005\r\n");
        LimitedFiles full;
        full.Limits[TemporaryFor(program.File)].LongestFile = 4;
        AppContext app{program.Prompts,           program.Settings,
                       program.Programs,          program.Dialogs,
                       program.Calendar,          full,
                       program.App.ProgramFolder, 1};
        InNextModal<frmOverviewOptions>([&](frmOverviewOptions& window) {
            Type(window, "txt_WarnHeadroom", "6");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_WarnHeadroom"), "6");
            QCOMPARE(program.Prompts.Shown.size(), 1u);
            QVERIFY(program.Prompts.Shown.front().Kind == PromptKind::Failure);
        });
        QVERIFY(!EditOverviewOptions(app, nullptr));
        QCOMPARE(ContentOf(program.File), "start=3/2005\r\n");
    }

    void Opens_large_enough_for_its_texts() {
        OptionsProgram program;
        WriteContent(program.File, "start=03/2005\r\n");
        program.Edit([](frmOverviewOptions& window) {
            QCoreApplication::processEvents();
            QCOMPARE(Named<QScrollArea>(window, "scroll_Form").verticalScrollBar()->maximum(), 0);
            QCOMPARE(Named<QScrollArea>(window, "scroll_Form").horizontalScrollBar()->maximum(), 0);
        });
    }

    void Beyond_the_screen_the_form_can_be_scrolled_to_every_field() {
        OptionsProgram program;
        program.Edit([](frmOverviewOptions& window) {
            window.resize(500, 200);
            QCoreApplication::processEvents();
            QVERIFY(window.height() <= 200);
            auto& address = Named<QLineEdit>(window, "txt_Address");
            Named<QComboBox>(window, "cbo_ToolingGelCoat").setFocus();
            QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            QVERIFY(address.hasFocus());
            QVERIFY(address.visibleRegion().boundingRect().height() == address.height());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_overview_options_test)
#include "frm_overview_options_test.moc"
