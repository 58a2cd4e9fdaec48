#include "app/frm_main.h"
#include "app/message_icons.h"
#include "app/os_files.h"
#include "app/pictures.h"
#include "app/qt_clock.h"
#include "app/qt_file_dialogs.h"
#include "app/qt_programs.h"
#include "app/qt_prompts.h"
#include "app/qt_settings.h"
#include "app/startup.h"
#include "base/messages.h"

#include "app/dialog_routines.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(EmblemIcon());
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS) // elsewhere the system has them
    QApplication::setStyle(new StyleWithMessageIcons);
#endif
    QtPrompts prompts;
    QtSettings settings;
    QtPrograms programs;
    QtFileDialogs dialogs;
    QtClock calendar;
    OsFiles files;
    AppContext app{prompts,
                   settings,
                   programs,
                   dialogs,
                   calendar,
                   files,
                   ToPath(QCoreApplication::applicationDirPath())};
    if (const Done started = StartUp(app); !started) {
        ShowError(app, started.error());
        return 1;
    }
    frmMain window(app);
    window.show();
    return QApplication::exec();
}
