#include "app/startup.h"
#include "base/text.h"
#include "platform/qt_programs.h"
#include "reports/frm_reports.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/transfer.h"

#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace mact {
namespace {

/// The program in the given folder, with a shell script as its browser. Programs are really started.
class BrowsingProgram : public TestProgram {
public:
    BrowsingProgram(const std::filesystem::path& programFolder, const std::string& script)
        : Browser(Folder.Path() / "my browser"), App{Prompts,  Settings, m_programs,    Dialogs,
                                                     Calendar, Files,    programFolder, 1} {
        std::filesystem::create_directories(programFolder / "data");
        WriteContent(Browser, "#!/bin/sh\n" + script);
        std::filesystem::permissions(Browser, std::filesystem::perms::owner_all);
        Settings.Values[{"BROWSER", "PATH"}] = PathText(Browser);
    }
    bool HasMaterials() {
        int processedCount = 0;
        int errorCount = 0;
        const bool isStarted = static_cast<bool>(StartUp(App));
        App.CurrentCompanyName = "Chantier \xD8rsted, \xE9t\xE9";
        ImportMaterialFile(App, MACT_SOURCE_FOLDER "/samples/materials.txt", processedCount, errorCount, {});
        return isStarted && processedCount > 0 && errorCount == 0;
    }

    /// Asks for the report of all materials in the reports window.
    void GenerateReport() {
        const frmReports window(App, nullptr);
        Named<QPushButton>(window, "cmd_Generate").click();
    }
    /// The file in which the script leaves its result.
    std::filesystem::path Result() const { return Folder.Path() / "my browser.result"; }

    std::filesystem::path Browser;

private:
    QtPrograms m_programs;

public:
    AppContext App;
};

} // namespace

/// Reports that are really opened in another program.
class browser_start_test : public QObject {
    Q_OBJECT

private slots:
#ifdef _WIN32
    void initTestCase() {
        QSKIP("The browsers are scripts of the shell.");
    }
#endif

    void The_browser_gets_the_reports_path_split_at_its_blanks() {
        const TemporaryFolder folder; // its name has a blank, a quote and a letter beyond ASCII
        const std::filesystem::path programFolder = folder.Path() / "two  blanks $(touch x) %PATH%";
        BrowsingProgram program(programFolder,
                                "for argument in \"$@\"; do printf '%s\\n' \"$argument\"; done "
                                ">\"$0.new\"\nmv -- \"$0.new\" \"$0.result\"\n");
        QVERIFY(program.HasMaterials());
        program.GenerateReport();
        constexpr int longestWait = 30'000;
        QTRY_VERIFY_WITH_TIMEOUT(std::filesystem::exists(program.Result()), longestWait);
        std::string expected = PathText(folder.Path());
        std::ranges::replace(expected, ' ', '\n');
        QCOMPARE(ContentOf(program.Result()), expected + "/two\nblanks\n$(touch\nx)\n%PATH%/report.htm\n");
        QVERIFY(program.ShownTexts().empty());
    }

#ifdef MACT_BROWSER_TESTS
    void Chromium_shows_the_report_that_was_generated() {
        const QTemporaryDir folder; // its name has no blank
        const std::filesystem::path programFolder = PathFromUtf8(folder.path().toStdString());
        BrowsingProgram program(
            programFolder,
            "export HOME=\"$0.home\"\nmkdir -- \"$HOME\"\n"
            "timeout --kill-after=5 60 chromium --headless --no-sandbox --disable-gpu --disable-quic "
            "--no-first-run --disable-background-networking --disable-component-update --disable-sync "
            "--disable-dev-shm-usage --user-data-dir=\"$HOME/profile\" --dump-dom \"$@\" "
            ">\"$0.new\" 2>\"$0.errors\"\nmv -- \"$0.new\" \"$0.result\"\n");
        QVERIFY(program.HasMaterials());
        program.GenerateReport();
        constexpr int longestWait = 70'000;
        QTRY_VERIFY_WITH_TIMEOUT(std::filesystem::exists(program.Result()), longestWait);
        const std::string seen = ContentOf(program.Result());
        QVERIFY2(seen.find("<u>All Materials</u>") != std::string::npos, seen.c_str());
        QVERIFY2(seen.find("<u>Chantier \u00D8rsted, \u00E9t\u00E9</u>") != std::string::npos, seen.c_str());
    }
#endif
};
} // namespace mact

QTEST_MAIN(mact::browser_start_test)
#include "browser_start_test.moc"
