#include "app/backup.h"
#include "base/text.h"
#include "platform/qt_programs.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "tests/support/test_program.h"

#include <QDir>
#include <QTest>

namespace mact {
namespace {

constexpr int LongestWait = 30'000; // milliseconds

/// A program that really starts other programs, in folders with any name. If a name were run by mistake, it
/// would run in the temporary folder.
class CopyingProgram {
public:
    explicit CopyingProgram(const std::string& programName = "program", const std::string& baseName = "base")
        : App{Prompts, Settings, m_programs, Dialogs, Calendar, Files, Folder.Path() / programName},
          Base(Folder.Path() / baseName), m_before(QDir::currentPath()) {
        std::filesystem::create_directories(Data());
        std::filesystem::create_directories(Base);
        Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
        QDir::setCurrent(QString::fromStdString(PathText(Folder.Path())));
    }
    CopyingProgram(const CopyingProgram&) = delete;
    CopyingProgram& operator=(const CopyingProgram&) = delete;
    ~CopyingProgram() { QDir::setCurrent(m_before); }

    TemporaryFolder Folder;
    ScriptedPrompts Prompts;
    ScriptedSettings Settings;
    ScriptedDialogs Dialogs;
    ScriptedClock Calendar;
    OsFiles Files;

private:
    QtPrograms m_programs;

public:
    AppContext App;
    std::filesystem::path Base;

    std::filesystem::path Data() const { return App.ProgramFolder / "data"; }
    std::filesystem::path Set(const char* number) const {
        return Base / (std::string("talvor_backupset_") + number);
    }
    /// The last thing that a copy does with a complete set is to remove the note of what it should hold.
    bool HasEnded() const { return !std::filesystem::exists(App.ProgramFolder / "backup.mact.note"); }

private:
    QString m_before;
};

std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

struct NameCase {
    const char* Row;
    const char* Name; ///< of a folder, or the path of one inside another
};
constexpr NameCase NameCases[] = {
    {"blanks",                 " two  blanks "                },
    {"single quote",           "it's"                         },
    {"double quote",           "say \"x\""                    },
    {"quotes that part paths", "a\" \"b"                      },
    {"the line's middle",      "a/data/*.*\" \"b"             },
    {"the line's end",         "a/*.*\""                      },
    {"the line's beginning",   "copy \""                      },
    {"command",                "$(touch x)"                   },
    {"quoted command",         "\"$(touch x)\""               },
    {"backquotes",             "`touch x`"                    },
    {"several commands",       "; touch x & touch x #"        },
    {"variable",               "$HOME ${PATH}"                },
    {"percent signs",          "%PATH%"                       },
    {"letters",                "Caf\u00E9 \u0141\u00F3d\u017A"},
    {"backslashes",            "\\back\\\\slash\\"            },
    {"glob characters",        "*?[a-z]{b,c}"                 },
    {"dash",                   "-rf"                          },
    {"tilde",                  "~"                            },
    {"line breaks",            "\nline\nbreaks\n"             },
};

} // namespace

/// Real backups, made by the system's shell.
class backup_copy_test : public QObject {
    Q_OBJECT

private slots:
#ifdef _WIN32
    void initTestCase() {
        QSKIP("These are the file names of other systems.");
    }
#endif

    void A_folder_of_any_name_is_copied_whole_and_never_run_data() {
        QTest::addColumn<QByteArray>("name");
        for (const auto& [row, name] : NameCases)
            QTest::newRow(row) << QByteArray(name);
    }
    void A_folder_of_any_name_is_copied_whole_and_never_run() {
        QFETCH(QByteArray, name);
        CopyingProgram program("p/" + name.toStdString(), "b/" + name.toStdString());
        WriteContent(program.Data() / "1_usage.talvor", EveryByte());
        WriteContent(program.Data() / "companies.talvor", std::string(300'000, 'c'));
        WriteContent(program.Base / "other", "untouched");
        const auto expected = FilesIn(program.Data());
        QVERIFY(RunBackup(program.App, false));
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(FilesIn(program.Set("1")) == expected);
        QVERIFY(FilesIn(program.Data()) == expected);
        QCOMPARE(FilesIn(program.Base), (std::map<std::string, std::string>{
                                            {"other", "untouched"}
        }));
        QCOMPARE(FilesIn(program.App.ProgramFolder).size(), std::size_t(1)); // backup.bat
        QCOMPARE(CountNamed(program.Folder.Path(), "x"), 0);
    }

    void Every_regular_file_is_copied_and_nothing_else() {
        CopyingProgram program;
        for (const char* name : {"1_usage.talvor", ".hidden", "-n", "two  blanks", "it's", "$(touch x)", "\\",
                                 "*", "no extension", "line\nbreak"})
            WriteContent(program.Data() / name, name);
        WriteContent(program.Data() / "empty", "");
        WriteContent(program.Folder.Path() / "elsewhere", "linked");
        std::filesystem::create_symlink(program.Folder.Path() / "elsewhere", program.Data() / "link");
        const auto expected = FilesIn(program.Data());
        QCOMPARE(expected.size(), std::size_t(12));
        std::filesystem::create_directory(program.Data() / "folder");
        std::filesystem::create_directory_symlink(program.Base, program.Data() / "link to a folder");
        QVERIFY(RunBackup(program.App, false));
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(FilesIn(program.Set("1")) == expected);
        QVERIFY(!std::filesystem::exists(program.Set("1") / "folder"));
        QVERIFY(!std::filesystem::exists(program.Set("1") / "link to a folder"));
        QCOMPARE(CountNamed(program.Folder.Path(), "x"), 0);
    }

    void A_copy_has_the_time_of_its_file() {
        CopyingProgram program;
        const auto file = program.Data() / "1_usage.talvor";
        WriteContent(file, "x");
        const auto time = std::filesystem::last_write_time(file) - std::chrono::hours(50);
        std::filesystem::last_write_time(file, time);
        QVERIFY(RunBackup(program.App, false));
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(std::filesystem::last_write_time(program.Set("1") / "1_usage.talvor") == time);
    }

    void Two_backups_make_two_sets() {
        CopyingProgram program;
        WriteContent(program.Data() / "1_usage.talvor", "before");
        QVERIFY(RunBackup(program.App, false));
        const auto before = FilesIn(program.Data());
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(FilesIn(program.Set("1")) == before);
        WriteContent(program.Data() / "1_usage.talvor", "after");
        QVERIFY(RunBackup(program.App, false));
        const auto after = FilesIn(program.Data());
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(FilesIn(program.Set("2")) == after);
        QVERIFY(FilesIn(program.Set("1")) == before);
    }

    void A_backup_in_the_program_folder_is_complete() {
        CopyingProgram program;
        program.Settings.Values.clear();
        WriteContent(program.Data() / "1_usage.talvor", EveryByte());
        const auto set = RunBackup(program.App, false);
        QVERIFY(set);
        QTRY_VERIFY_WITH_TIMEOUT(program.HasEnded(), LongestWait);
        QVERIFY(FilesIn(*set) == FilesIn(program.Data()));
    }
};
} // namespace mact

QTEST_MAIN(mact::backup_copy_test)
#include "backup_copy_test.moc"
