#include "base/text.h"
#include "store/additional_names.h"
#include "store/frm_extra_pollutants_names.h"
#include "tests/support/gui.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

QStringList Names(const QWidget& window) {
    QStringList names;
    for (int index = 0; index < 6; ++index)
        names << Named<QLineEdit>(window, ("txt_pname_" + std::to_string(index)).c_str()).text();
    return names;
}

void Type(const QWidget& window, const QStringList& names) {
    for (int index = 0; index < 6; ++index) {
        auto& edit = Named<QLineEdit>(window, ("txt_pname_" + std::to_string(index)).c_str());
        edit.clear();
        edit.insert(names[index]);
    }
}

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

const QStringList AllEmpty(6, QString());

struct NamesProgram : TestProgram {
    std::filesystem::path File = DataFile("1_additional.talvor");

    void Show(const std::function<void(frmExtraPollutantsNames&)>& act) {
        InNextModal<frmExtraPollutantsNames>(act);
        ShowAdditionalNames(App, nullptr);
    }
    /// The names that the window shows for a file with this content.
    QStringList ShownOf(std::string_view content) {
        WriteContent(File, content);
        QStringList names;
        Show([&names](frmExtraPollutantsNames& window) { names = Names(window); });
        return names;
    }
    /// Types the names and presses OK.
    void Enter(const QStringList& names) {
        Show([&](frmExtraPollutantsNames& window) {
            Type(window, names);
            Press(window, "cmd_OK");
        });
    }
};

} // namespace

class frm_extra_pollutants_names_test : public QObject {
    Q_OBJECT

private slots:
    void What_will_be_read_back_follows_each_key_and_stops_no_save() {
        NamesProgram program;
        program.Show([&](frmExtraPollutantsNames& window) {
            const auto& label = Named<QLabel>(window, "lbl_ReadBack");
            auto& edit = Named<QLineEdit>(window, "txt_pname_0");
            QCOMPARE(label.text(), QString());
            edit.selectAll();
            QTest::keyClicks(&edit, QStringLiteral("1"));
            QCOMPARE(label.text(), QString());
            QTest::keyClicks(&edit, QStringLiteral(",3-B"));
            const QString said =
                QStringLiteral("These names will be read back as \"3-B\", \"-\", \"-\", \"-\", "
                               "\"-\", \"-\". Avoid commas.");
            QCOMPARE(label.text(), said);
            QCOMPARE(edit.accessibleDescription(), said);
            QVERIFY(label.heightForWidth(label.width()) <= label.height());
            Press(window, "cmd_OK");
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(ContentOf(program.File), std::string("1,3-B|-|-|-|-|-\r\n"));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Names_that_are_mended_are_no_longer_spoken_of() {
        NamesProgram program;
        program.Show([&](frmExtraPollutantsNames& window) {
            Type(window, {"a|b", "MMA", "-", "-", "-", "-"});
            QVERIFY(!Named<QLabel>(window, "lbl_ReadBack").text().isEmpty());
            Type(window, {"a b", "MMA", "-", "-", "-", "-"});
            QCOMPARE(Named<QLabel>(window, "lbl_ReadBack").text(), QString());
            QCOMPARE(Named<QLineEdit>(window, "txt_pname_0").accessibleDescription(), QString());
        });
    }

    void Long_names_that_are_lost_leave_the_window_on_the_screen() {
        NamesProgram program;
        program.Show([&](frmExtraPollutantsNames& window) {
            Type(window, QStringList(6, QString(250, u'W') + QStringLiteral(" ,|")));
            QCoreApplication::processEvents();
            const auto& label = Named<QLabel>(window, "lbl_ReadBack");
            QVERIFY(label.heightForWidth(label.width()) <= label.height());
            QVERIFY(window.width() < 600 && window.height() <= 500);
            Type(window, {QString(250, u'W') + u',' + QString(250, u'W'), QString(250, u'W'),
                          QString(250, u'W'), QString(250, u'W'), QString(250, u'W'), QString(250, u'W')});
            QCoreApplication::processEvents();
            QVERIFY(label.heightForWidth(label.width()) <= label.height());
            QVERIFY2(window.width() < 600 && window.height() <= 500,
                     qPrintable(QString::number(window.height())));
        });
    }

    void A_company_without_the_file_gets_six_unused_names() {
        NamesProgram program;
        program.Show([](frmExtraPollutantsNames& window) { QCOMPARE(Names(window), QStringList(6, "-")); });
        QCOMPARE(ContentOf(program.File), std::string("\"-|-|-|-|-|-\"\r\n"));
    }

    void The_companys_names_are_shown() {
        NamesProgram program;
        QCOMPARE(program.ShownOf("MMA|Styr\xE9ne| x |-|-|-\r\n"),
                 QStringList({"MMA", "Styr\u00E9ne", " x ", "-", "-", "-"}));
    }

    void Five_or_seven_names_open_with_six_empty_boxes() {
        for (const char* content : {"MMA|-|-|-|-\r\n", "MMA|-|-|-|-|-|-\r\n"}) {
            NamesProgram program;
            QCOMPARE(program.ShownOf(content), AllEmpty);
            QCOMPARE(program.App.AdditionalNames, std::string("-|-|-|-|-|-"));
            QCOMPARE(ContentOf(program.File), std::string(content));
        }
    }

    void An_empty_file_opens_with_six_empty_boxes() {
        NamesProgram program;
        QCOMPARE(program.ShownOf(""), AllEmpty);
        QCOMPARE(program.App.AdditionalNames, std::string());
    }

    void Names_are_saved_as_one_plain_line() {
        NamesProgram program;
        program.Enter({"MMA", "Styrene", "-", "-", "-", "-"});
        QCOMPARE(ContentOf(program.File), std::string("MMA|Styrene|-|-|-|-\r\n"));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Saved_names_count_from_the_next_load_on() {
        NamesProgram program;
        program.Enter({"MMA", "Styrene", "-", "-", "-", "-"});
        QCOMPARE(program.App.AdditionalNames, std::string("-|-|-|-|-|-"));
        LoadAdditionalNames(program.App);
        QCOMPARE(program.App.AdditionalNames, std::string("MMA|Styrene|-|-|-|-"));
    }

    void Names_are_saved_as_typed_with_their_blanks() {
        NamesProgram program;
        program.Enter({" MMA ", "b", "c", "d", "e", "f  "});
        QCOMPARE(ContentOf(program.File), std::string(" MMA |b|c|d|e|f  \r\n"));
    }

    void Of_names_with_a_comma_only_what_follows_it_reads_back() {
        NamesProgram program;
        program.Enter({"1,3-Butadiene", "MMA", "-", "-", "-", "-"});
        QCOMPARE(ContentOf(program.File), std::string("1,3-Butadiene|MMA|-|-|-|-\r\n"));
        LoadAdditionalNames(program.App);
        QCOMPARE(program.App.AdditionalNames, std::string("3-Butadiene|MMA|-|-|-|-"));
    }

    void An_empty_name_is_refused_and_nothing_is_saved() {
        NamesProgram program;
        program.Show([&program](frmExtraPollutantsNames& window) {
            Type(window, {"a", "b", "  ", "d", "", "f"});
            Press(window, "cmd_OK");
            QVERIFY(window.isVisible());
            QCOMPARE(Names(window), QStringList({"a", "b", "  ", "d", "", "f"}));
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("txt_pname_2"));
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{
                         "Error(s) found while processing the form:\r\n\r\n"
                         "You can not leave any of the pollutant name empty.\r\n"
                         "If you dont want to use all pollutants please use '-' as their name to make them "
                         "disable."});
        });
        QCOMPARE(ContentOf(program.File), std::string("\"-|-|-|-|-|-\"\r\n"));
    }

    void Escape_and_Cancel_save_nothing() {
        for (const bool isByKey : {true, false}) {
            NamesProgram program;
            program.Show([isByKey](frmExtraPollutantsNames& window) {
                Type(window, {"a", "b", "c", "d", "e", "f"});
                if (isByKey)
                    QTest::keyClick(&window, Qt::Key_Escape);
                else
                    Press(window, "cmd_Cancel");
                QVERIFY(!window.isVisible());
            });
            QCOMPARE(ContentOf(program.File), std::string("\"-|-|-|-|-|-\"\r\n"));
        }
    }

    void Enter_saves() {
        NamesProgram program;
        program.Show([](frmExtraPollutantsNames& window) {
            Type(window, {"a", "b", "c", "d", "e", "f"});
            QTest::keyClick(&Named<QLineEdit>(window, "txt_pname_0"), Qt::Key_Return);
        });
        QCOMPARE(ContentOf(program.File), std::string("a|b|c|d|e|f\r\n"));
    }

    void A_character_that_the_code_page_lacks_is_shown_as_a_question_mark() {
        NamesProgram program;
        program.Show([](frmExtraPollutantsNames& window) {
            Type(window, {"\u0141\u00F3\nd", "b", "c", "d", "e", "f"});
            QCOMPARE(Names(window).front(), QStringLiteral("?\u00F3 d"));
            Press(window, "cmd_OK");
        });
        QCOMPARE(ContentOf(program.File), std::string("?\xF3 d|b|c|d|e|f\r\n"));
    }

    void Names_that_cannot_be_saved_keep_the_window_open_and_the_old_file() {
        NamesProgram program;
        LimitedFiles files;
        AppContext app{program.Prompts,           program.Settings,
                       program.Programs,          program.Dialogs,
                       program.Calendar,          files,
                       program.App.ProgramFolder, 1};
        WriteContent(program.File, "MMA|-|-|-|-|-\r\n");
        files.Limits[TemporaryFor(program.File)].LongestFile = 3;
        InNextModal<frmExtraPollutantsNames>([](frmExtraPollutantsNames& window) {
            Type(window, {"a", "b", "c", "d", "e", "f"});
            Press(window, "cmd_OK");
            QVERIFY(window.isVisible());
            QCOMPARE(Names(window).front(), QStringLiteral("a"));
        });
        ShowAdditionalNames(app, nullptr);
        QCOMPARE(program.ShownTexts(),
                 std::vector<std::string>{"Cannot write the file \"" + PathText(program.File) +
                                          "\": The disk is full."});
        QCOMPARE(ContentOf(program.File), std::string("MMA|-|-|-|-|-\r\n"));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_extra_pollutants_names_test)
#include "frm_extra_pollutants_names_test.moc"
