#include "app/backup_script.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/program_style.h"
#include "platform/qt_clock.h"
#include "platform/qt_file_dialogs.h"
#include "platform/qt_programs.h"
#include "platform/qt_prompts.h"
#include "platform/qt_settings.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QDate>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QTest>

#ifndef _WIN32
#include <fstream>
#include <sys/stat.h>
#endif

namespace mact {

class qt_services_test : public QObject {
    Q_OBJECT

    /// Settings in a folder of their own.
    struct SettingsFolder {
        TemporaryFolder Folder;
        QtSettings Settings;
        SettingsFolder() { Use(Folder.Path()); }
        static void Use(const std::filesystem::path& path) {
#ifdef _WIN32
            qputenv("MACT_SETTINGS_FOLDER", QString::fromStdString(PathText(path)).toLocal8Bit());
#else
            QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                               QString::fromStdString(PathText(path)));
#endif
        }
        std::filesystem::path File() const {
            return Folder.Path() / "MACT" / "TALVOR_QUME_APP.conf";
        }
    };

    /// The name of the file that the dialog chooses once `name` is typed.
    static std::string ChosenName(FileKind kind, const char* name) {
        const TemporaryFolder folder;
        InNextModal<QFileDialog>([&](QFileDialog& window) {
            window.setDirectory(QString::fromStdString(PathText(folder.Path())));
            Named<QLineEdit>(window, "fileNameEdit").setText(QString::fromLatin1(name));
            Named<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Save)->click();
        });
        const auto chosen = QtFileDialogs().ChooseFileToSave("Save", kind);
        return chosen && chosen->parent_path() == folder.Path() ? chosen->filename().string() : std::string();
    }

private slots:
    void A_setting_that_was_never_written_is_empty() {
        SettingsFolder folder;
        QCOMPARE(folder.Settings.Read("BACKUP", "PATH"), std::string());
    }

    void Settings_come_back_as_they_were_written() {
        SettingsFolder folder;
        const std::string value = "C:\\Caf\xC3\xA9, \"\xC5\x81\xC3\xB3"
                                  "d\xC5\xBA\"; 100%=@Variant(x)\\ ";
        QVERIFY(folder.Settings.Write("BROWSER", "PATH", value));
        QVERIFY(folder.Settings.Write("BACKUP", "PATH", ""));
        QCOMPARE(QtSettings().Read("BROWSER", "PATH"), value);
        QCOMPARE(QtSettings().Read("BACKUP", "PATH"), std::string());
    }

    void A_setting_is_on_disk_when_it_is_written() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        QVERIFY(folder.Settings.Write("COMPANY", "DEFAULT", "12"));
        QCOMPARE(ContentOf(folder.File()), std::string("[COMPANY]\nDEFAULT=12\n"));
#endif
    }

    void A_setting_reads_as_it_was_written_last() {
        SettingsFolder folder;
        for (int round = 0; round < 50; ++round) // all of one length, and some within one ms
            for (const char* value : {"1", "2"}) {
                QVERIFY(folder.Settings.Write("COMPANY", "DEFAULT", value));
                QCOMPARE(QtSettings().Read("COMPANY", "DEFAULT"), std::string(value));
            }
    }

    void The_settings_file_is_the_users_alone() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        QVERIFY(folder.Settings.Write("COMPANY", "DEFAULT", "1"));
        QVERIFY(folder.Settings.Write("COMPANY", "DEFAULT", "2"));
        using std::filesystem::perms;
        QVERIFY(std::filesystem::status(folder.File()).permissions() ==
                (perms::owner_read | perms::owner_write));
        QCOMPARE(std::distance(std::filesystem::directory_iterator(folder.File().parent_path()), {}), 1);
#endif
    }

    void A_folder_in_the_settings_place_is_a_failure_and_stays() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directories(folder.File() / "inside");
        QVERIFY(!folder.Settings.Write("COMPANY", "DEFAULT", "1"));
        QVERIFY(std::filesystem::is_directory(folder.File() / "inside"));
#endif
    }

    void The_settings_file_is_where_Qt_has_it() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        QVERIFY(SettingsFile() == folder.File());
        const QSettings own(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("MACT"),
                            QStringLiteral("TALVOR_QUME_APP"));
        QCOMPARE(PathText(SettingsFile()), own.fileName().toStdString());
#endif
    }

    void A_folder_that_the_environment_names_has_the_settings_on_every_platform() {
        const TemporaryFolder named;
        const QByteArray before = qgetenv("MACT_SETTINGS_FOLDER");
        qputenv("MACT_SETTINGS_FOLDER", QString::fromStdString(PathText(named.Path())).toLocal8Bit());
        const std::filesystem::path file = named.Path() / "MACT" / "TALVOR_QUME_APP.conf";
        QVERIFY(SettingsFile() == file);
        QVERIFY(QtSettings().Write("COMPANY", "DEFAULT", "3"));
        QVERIFY(ContentOf(file).starts_with("[COMPANY]"));
        QCOMPARE(QtSettings().Read("COMPANY", "DEFAULT"), std::string("3"));
        if (before.isNull())
            qunsetenv("MACT_SETTINGS_FOLDER");
        else
            qputenv("MACT_SETTINGS_FOLDER", before);
    }

    void A_pipe_in_the_settings_place_is_not_opened() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directory(folder.File().parent_path());
        QCOMPARE(::mkfifo(folder.File().c_str(), 0600), 0);
        QCOMPARE(folder.Settings.Read("BACKUP", "PATH"), std::string()); // would wait for a writer
        const Done written = folder.Settings.Write("COMPANY", "DEFAULT", "1");
        QVERIFY(!written);
        QCOMPARE(written.error().Reason, std::string("it is not a regular file"));
        QVERIFY(std::filesystem::is_fifo(folder.File()));
#endif
    }

    void A_settings_file_of_many_megabytes_holds_no_settings_and_stays() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directory(folder.File().parent_path());
        WriteContent(folder.File(), "[COMPANY]\nDEFAULT=1\n");
        QCOMPARE(folder.Settings.Read("COMPANY", "DEFAULT"), std::string("1"));
        std::filesystem::resize_file(folder.File(), 50'000'000);
        QCOMPARE(folder.Settings.Read("COMPANY", "DEFAULT"), std::string());
        QVERIFY(!folder.Settings.Write("COMPANY", "DEFAULT", "2"));
        QVERIFY(std::filesystem::file_size(folder.File()) == 50'000'000);
#endif
    }

    void A_link_to_the_settings_is_followed_and_stays() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directory(folder.File().parent_path());
        const std::filesystem::path real = folder.Folder.Path() / "real.conf";
        WriteContent(real, "[COMPANY]\nDEFAULT=1\n");
        std::filesystem::create_symlink(real, folder.File());
        QCOMPARE(folder.Settings.Read("COMPANY", "DEFAULT"), std::string("1"));
        QVERIFY(folder.Settings.Write("COMPANY", "DEFAULT", "2"));
        QVERIFY(std::filesystem::is_symlink(folder.File()));
        QCOMPARE(ContentOf(real), std::string("[COMPANY]\nDEFAULT=2\n"));
#endif
    }

    void A_settings_file_that_cannot_be_read_is_a_failure_and_not_empty() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directories(folder.File().parent_path());
        std::filesystem::create_symlink(folder.File(), folder.File()); // leads to itself
        const Result<std::string> value = folder.Settings.TryRead("COMPANY", "DEFAULT");
        QVERIFY(!value);
        QVERIFY(value.error().Path == folder.File());
        QCOMPARE(folder.Settings.Read("COMPANY", "DEFAULT"), std::string());
        std::filesystem::remove(folder.File());
        WriteContent(folder.File(), "not a section = not a setting");
        QVERIFY(folder.Settings.TryRead("COMPANY", "DEFAULT"));
#endif
    }

    void A_comma_in_a_file_that_was_edited_by_hand_stays() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        std::filesystem::create_directory(folder.File().parent_path());
        WriteContent(folder.File(), "[BROWSER]\nPATH=/opt/a,b/browser\n");
        QCOMPARE(folder.Settings.Read("BROWSER", "PATH"), std::string("/opt/a,b/browser"));
#endif
    }

    void A_setting_that_cannot_be_saved_is_a_failure_that_names_the_file() {
#ifdef _WIN32
        QSKIP("The registry is no file.");
#else
        SettingsFolder folder;
        WriteContent(folder.Folder.Path() / "file", "");
        SettingsFolder::Use(folder.Folder.Path() / "file"); // a file: nothing can be created below it
        const Done written = folder.Settings.Write("COMPANY", "DEFAULT", "1");
        QVERIFY(!written);
        QCOMPARE(SentenceOf(written.error()),
                 "Cannot save the setting COMPANY/DEFAULT in \"" +
                     PathText(folder.Folder.Path() / "file" / "MACT" / "TALVOR_QUME_APP.conf") +
                     "\": it cannot be written.");
#endif
    }

    void A_message_box_shows_plain_text_under_the_caption() {
        QString text;
        QString caption;
        Qt::TextFormat format = Qt::AutoText;
        InNextModal<QMessageBox>([&](QMessageBox& box) {
            text = box.text();
            caption = box.windowTitle();
            format = box.textFormat();
        });
        QtPrompts().Show({"<b>Caf\xC3\xA9</b>\r\nline 2"});
        QCOMPARE(text, QStringLiteral("<b>Caf\u00E9</b>\nline 2"));
        QCOMPARE(caption, QStringLiteral("MACT"));
        QCOMPARE(format, Qt::PlainText);
    }

    void Each_kind_of_message_has_its_icon() {
        const std::pair<PromptKind, QMessageBox::Icon> icons[] = {
            {PromptKind::Failure,     QMessageBox::Critical   },
            {PromptKind::FormErrors,  QMessageBox::Information},
            {PromptKind::Information, QMessageBox::Information},
            {PromptKind::Exclamation, QMessageBox::Warning    },
            {PromptKind::Question,    QMessageBox::Question   },
        };
        for (const auto& [kind, expected] : icons) {
            QMessageBox::Icon icon = QMessageBox::NoIcon;
            InNextModal<QMessageBox>([&](QMessageBox& box) { icon = box.icon(); });
            QtPrompts().Show({"x", kind});
            QCOMPARE(icon, expected);
        }
    }

    void A_file_that_the_system_has_no_program_for_is_a_failure() {
        const TemporaryFolder folder;
        const Done opened =
            QtPrograms().OpenWithSystem(folder.Path() / "page.htm"); // nothing can be, offscreen
        QVERIFY(!opened);
        QCOMPARE(SentenceOf(opened.error()), "Cannot open the file \"" +
                                                 PathText(folder.Path() / "page.htm") +
                                                 "\": the system has no program for it.");
    }

    void No_platform_puts_its_own_icons_on_the_buttons_of_message_boxes() {
        struct Desktop : QProxyStyle { // as a plain X desktop has it
            int styleHint(StyleHint, const QStyleOption*, const QWidget*, QStyleHintReturn*) const override {
                return 1;
            }
        };
        ProgramStyle style;
        style.setBaseStyle(new Desktop);
        QCOMPARE(style.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 0);
    }

#ifdef _WIN32
    void A_script_runs_in_a_folder_of_any_name_data() {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"plain", "a b", "x & y", "\u00e9", "100% x", "%PATH% p", "a^b", "(c) d", "a!b"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void A_script_runs_in_a_folder_of_any_name() {
        QFETCH(const QString, name);
        const TemporaryFolder folder;
        const std::filesystem::path script = folder.Path() / PathFromUtf8(name.toStdString()) / "backup.bat";
        std::filesystem::create_directories(script.parent_path());
        WriteContent(script, "@echo off\r\necho It ran.> ran.txt\r\n");
        QVERIFY(QtPrograms().Start(BackupStart(script)));
        QTRY_VERIFY(std::filesystem::exists(script.parent_path() / "ran.txt"));
        QTRY_COMPARE(ContentOf(script.parent_path() / "ran.txt"), std::string("It ran.\r\n"));
    }
#endif

    void Message_boxes_have_icons_without_an_icon_theme() {
        const ProgramStyle style;
        const QString themeBefore = QIcon::themeName();
        QIcon::setThemeName(QStringLiteral("no such theme"));
        for (const QStyle::StandardPixmap icon :
             {QStyle::SP_MessageBoxInformation, QStyle::SP_MessageBoxQuestion, QStyle::SP_MessageBoxWarning,
              QStyle::SP_MessageBoxCritical}) {
            const QImage picture = style.standardIcon(icon).pixmap(QSize(128, 128)).toImage();
            QCOMPARE(picture.size(), QSize(128, 128)); // drawn at that size
            QVERIFY(picture.pixelColor(64, 24).alpha() > 0);
        }
        QIcon::setThemeName(themeBefore);
    }

    void Message_boxes_have_the_programs_icons_whatever_the_desktop_has() {
        const TemporaryFolder folder; // with an icon theme, whose icons are empty
        const std::filesystem::path theme = folder.Path() / "theirs";
        std::filesystem::create_directories(theme / "16");
        WriteContent(theme / "index.theme",
                     "[Icon Theme]\nName=theirs\nDirectories=16\n\n[16]\nSize=16\nType=Scalable\n");
        QPixmap empty(16, 16);
        empty.fill(Qt::transparent);
        for (const char* name : {"dialog-information", "dialog-question", "dialog-warning", "dialog-error"})
            QVERIFY(empty.save(FromPath(theme / "16" / (std::string(name) + ".png"))));
        const QStringList pathsBefore = QIcon::themeSearchPaths();
        const QString themeBefore = QIcon::themeName();
        QIcon::setThemeSearchPaths({FromPath(folder.Path())});
        QIcon::setThemeName(QStringLiteral("theirs"));
        QVERIFY(QIcon::hasThemeIcon(QStringLiteral("dialog-error")));
        const ProgramStyle style;
        for (const QStyle::StandardPixmap icon :
             {QStyle::SP_MessageBoxInformation, QStyle::SP_MessageBoxQuestion, QStyle::SP_MessageBoxWarning,
              QStyle::SP_MessageBoxCritical})
            QVERIFY(style.standardIcon(icon).pixmap(QSize(128, 128)).toImage().pixelColor(64, 24).alpha() >
                    0);
        QIcon::setThemeName(themeBefore);
        QIcon::setThemeSearchPaths(pathsBefore);
    }

    void A_text_that_is_too_high_for_the_screen_is_scrolled_and_the_buttons_stay() {
        InNextModal<QMessageBox>([](const QMessageBox& box) {
            QVERIFY(box.height() < box.screen()->availableSize().height());
            const auto* area = box.findChild<QScrollArea*>();
            QVERIFY(area);
            QVERIFY(area->verticalScrollBar()->maximum() > 0);
            QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
            const QWidget& button = *box.button(QMessageBox::Ok);
            QCOMPARE(button.visibleRegion().boundingRect(), button.rect());
        });
        std::string text;
        for (int line = 0; line < 200; ++line)
            text += "- what is wrong\r\n";
        QtPrompts().Show({text, PromptKind::FormErrors});
    }

    void A_short_text_is_not_scrolled() {
        InNextModal<QMessageBox>([](const QMessageBox& box) { QVERIFY(!box.findChild<QScrollArea*>()); });
        QtPrompts().Show({"- what is wrong\r\n", PromptKind::FormErrors});
    }

    void A_long_name_is_shown_whole_on_several_lines() {
        InNextModal<QMessageBox>([](const QMessageBox& box) {
            QString text = box.text();
            QCOMPARE(text.remove(QChar(0x200B)), QString(300, u'W'));
            const auto& label = Named<QLabel>(box, "qt_msgbox_label");
            const QRect whole = label.fontMetrics().boundingRect(QRect(0, 0, label.width(), 10'000),
                                                                 Qt::TextWordWrap, box.text());
            QVERIFY(whole.width() <= label.width());
            QVERIFY(whole.height() <= label.height());
        });
        QtPrompts().Show({std::string(300, 'W'), PromptKind::Information});
    }

    void Cancel_is_the_last_button_whatever_the_desktop() {
        QApplication::setStyle(new ProgramStyle);
        InNextModal<QMessageBox>([](const QMessageBox& box) {
            const auto left = [&box](QMessageBox::StandardButton button) { return box.button(button)->x(); };
            QVERIFY(left(QMessageBox::Yes) < left(QMessageBox::No));
            QVERIFY(left(QMessageBox::No) < left(QMessageBox::Cancel));
        });
        QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNoCancel});
    }

    void A_question_answers_with_the_button_that_was_pressed() {
        InNextModal<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
        QCOMPARE(QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNo}), PromptAnswer::Yes);
        InNextModal<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
        QCOMPARE(QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNoCancel}), PromptAnswer::No);
    }

    void Enter_and_Escape_answer_a_question_with_No() {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            InNextModal<QMessageBox>([key](QMessageBox& box) { QTest::keyClick(&box, key); });
            QCOMPARE(QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNo}), PromptAnswer::No);
        }
    }

    void A_question_that_is_closed_counts_as_No_or_Cancel() {
        InNextModal<QMessageBox>([](QMessageBox& box) { box.close(); });
        QCOMPARE(QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNo}), PromptAnswer::No);
        InNextModal<QMessageBox>([](QMessageBox& box) { box.close(); });
        QCOMPARE(QtPrompts().Show({"x", PromptKind::Question, PromptButtons::YesNoCancel}),
                 PromptAnswer::Cancel);
    }

    void A_program_gets_its_arguments_whole() {
#ifdef _WIN32
        QSKIP("Windows starts the command line.");
#else
        TemporaryFolder folder;
        const std::filesystem::path pipe = folder.Path() / "pipe";
        QCOMPARE(mkfifo(pipe.c_str(), 0600), 0);
        const std::vector<std::string> arguments = {"-c", "printf '%s|%s' \"$0\" \"$1\" > \"$2\"", "a b",
                                                    "$HOME \"q\"", PathText(pipe)};
        QVERIFY(QtPrograms().Start({"/bin/sh", arguments, "", false}));
        QCOMPARE(ContentOf(pipe), std::string("a b|$HOME \"q\"")); // reading the pipe waits for the writer
#endif
    }

    void A_program_that_does_not_exist_is_a_failure_that_names_it() {
#ifdef _WIN32
        QSKIP("Windows starts the command line.");
#else
        const Done started = QtPrograms().Start({"/no/such browser", {}, "", false});
        QVERIFY(!started);
        QVERIFY(SentenceOf(started.error()).starts_with("Cannot start the program \"/no/such browser\": "));
#endif
    }

    void A_PDF_gets_its_ending_if_none_is_typed() {
        QCOMPARE(ChosenName(FileKind::Pdf, "december"), std::string("december.pdf"));
        QCOMPARE(ChosenName(FileKind::Pdf, "december.PDF"), std::string("december.PDF"));
        QCOMPARE(ChosenName(FileKind::Text, "usage"), std::string("usage"));
    }

    void A_cancelled_file_dialog_chooses_nothing() {
        InNextModal<QFileDialog>([](QFileDialog& window) { window.close(); });
        QVERIFY(!QtFileDialogs().ChooseFileToSave("Save", FileKind::Text));
    }

    void The_clock_tells_the_month_of_today() {
        const QDate before = QDate::currentDate();
        const std::chrono::year_month month = QtClock().CurrentMonth();
        const QDate after = QDate::currentDate();
        const QDate told(static_cast<int>(month.year()),
                         static_cast<int>(static_cast<unsigned>(month.month())), 1);
        QVERIFY(told == QDate(before.year(), before.month(), 1) ||
                told == QDate(after.year(), after.month(), 1));
    }
};
} // namespace mact

QTEST_MAIN(mact::qt_services_test)
#include "qt_services_test.moc"
