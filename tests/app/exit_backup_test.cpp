#include "base/text.h"
#include "tests/support/folder_content.h"
#include "tests/support/keyboard_pipe.h"
#include "tests/support/test_program.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

namespace mact {

#ifdef __linux__

namespace {

constexpr int LongestWait = 30'000; // milliseconds

/// The desktop program itself, in a folder of its own and with its own settings.
class InstalledProgram {
public:
    std::filesystem::path Root() const { return m_folder.Path(); }
    std::filesystem::path Folder() const { return m_folder.Path() / "it's \"$(touch x)\" `touch x` 100%"; }
    std::filesystem::path Data() const { return Folder() / "data"; }

    explicit InstalledProgram(const std::string& settings) : m_keyboard(m_folder.Path()) {
        std::filesystem::create_directories(Data());
        std::filesystem::copy_file(PathFromUtf8(MACT_PROGRAM), Folder() / "mact");
        std::filesystem::create_directories(SettingsFolder() / "MACT");
        WriteContent(SettingsFile(), settings);
    }

    /// Starts the program, presses Alt and the letter of a button in its main window, and waits for the end.
    /// Returns the program's status; -1 if it did not end in time or crashed.
    int RunAndPressAlt(std::uint16_t key) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("XDG_CONFIG_HOME", QString::fromStdString(PathText(SettingsFolder())));
        environment.insert("QT_QPA_GENERIC_PLUGINS", KeyboardPipe::Plugin);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProgram(QString::fromStdString(PathText(Folder() / "mact")));
        process.setWorkingDirectory(QString::fromStdString(PathText(m_folder.Path())));
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start();
        QElapsedTimer clock;
        clock.start();
        // Keys pressed before the window is there are lost, so they are pressed again.
        constexpr int betweenKeys = 50;
        while (!process.waitForFinished(betweenKeys) && process.state() != QProcess::NotRunning) {
            if (clock.elapsed() > LongestWait) return -1; // QProcess kills it when destroyed
            m_keyboard.Press({KEY_LEFTALT, key});
        }
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    std::filesystem::path SettingsFile() const { return SettingsFolder() / "MACT" / "TALVOR_QUME_APP.conf"; }

private:
    std::filesystem::path SettingsFolder() const { return m_folder.Path() / "settings"; }

    TemporaryFolder m_folder;
    KeyboardPipe m_keyboard;
};

} // namespace

#endif

/// The program as it is installed: it is started, Exit is pressed, and it ends.
class exit_backup_test : public QObject {
    Q_OBJECT

private slots:
#ifdef __linux__
    void The_copy_of_a_backup_on_exit_is_complete_after_the_end() {
        InstalledProgram program("[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=7\n");
        for (int company = 1; company <= 20; ++company)
            WriteContent(program.Data() / (std::to_string(company) + "_materials.talvor"),
                         std::string(200'000, static_cast<char>(company)));
        QCOMPARE(program.RunAndPressAlt(KEY_X), 0);
        const auto expected = FilesIn(program.Data());
        QCOMPARE(expected.size(), std::size_t(21)); // with the material types, which the start writes
        // The last thing that the copy does is to remove the note of what the set should hold.
        QTRY_VERIFY_WITH_TIMEOUT(!std::filesystem::exists(program.Folder() / "backup.mact.note"),
                                 LongestWait);
        QVERIFY(FilesIn(program.Folder() / "talvor_backupset_7") == expected);
        QCOMPARE(ContentOf(program.SettingsFile()), std::string("[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=8\n"));
        QCOMPARE(CountNamed(program.Root(), "x"), 0);
    }

    void Without_the_setting_there_is_none() {
        InstalledProgram program("[BACKUP]\nAUTO_BACKUP=0\n");
        QCOMPARE(program.RunAndPressAlt(KEY_X), 0);
        QVERIFY(!std::filesystem::exists(program.Folder() / "talvor_backupset_1"));
        QVERIFY(!std::filesystem::exists(program.Folder() / "backup.bat"));
        QCOMPARE(ContentOf(program.SettingsFile()), std::string("[BACKUP]\nAUTO_BACKUP=0\n"));
    }
#else
    void initTestCase() {
        QSKIP("The keys are pressed as Linux does it.");
    }
#endif
};
} // namespace mact

QTEST_MAIN(mact::exit_backup_test)
#include "exit_backup_test.moc"
