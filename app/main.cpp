#include "app/frm_main.h"
#include "app/startup.h"
#include "base/link_guard.h"
#include "base/messages.h"
#include "dialogs/pictures.h"
#include "dialogs/program_style.h"
#include "platform/desktop_colours.h"
#include "platform/os_files.h"
#include "platform/qt_clock.h"
#include "platform/qt_file_dialogs.h"
#include "platform/qt_programs.h"
#include "platform/qt_prompts.h"
#include "platform/qt_settings.h"
#include "platform/qt_window_colours.h"

#include "dialogs/dialog_routines.h"

#include <QApplication>

using namespace mact;

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(EmblemIcon());
    QApplication::setStyle(new ProgramStyle);
    QtPrompts prompts;
    const std::filesystem::path programFolder = ToPath(QCoreApplication::applicationDirPath());
    QtSettings settings(programFolder);
    QtPrograms programs;
    QtFileDialogs dialogs;
    QtClock calendar;
    OsFiles systemFiles;
    LinkGuard files(systemFiles, programFolder, SettingsFile());
    AppContext app{prompts, settings, programs, dialogs, calendar, files, programFolder};
    History changes;
    app.Changes = &changes;
    const std::unique_ptr<DesktopColours> desktop = AskDesktop();
    QtWindowColours colours(settings, *desktop);
    app.Colours = &colours;
    if (const Done started = StartUp(app); !started) {
        ShowError(app, started.error());
        return 1;
    }
    frmMain window(app);
    window.show();
    return QApplication::exec();
}
