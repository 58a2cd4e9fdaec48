#include "dialogs/program_style.h"
#include "dialogs/window_colours.h"
#include "platform/qt_prompts.h"
#include "tests/support/all_windows.h"
#include "tests/support/sample_shop.h"

#include <QApplication>
#include <QPixmap>

#include <algorithm>
#include <iostream>

using namespace mact;

// mact_screenshots FOLDER light|dark [NAME...]
//
// Draws all windows, or those named, with the sample shop in them, as FOLDER/NAME_light.png.
// QT_SCALE_FACTOR=2 makes it NAME_light@2x.png, MACT_FONT_POINTS=20 draws large letters.

namespace {

void ShowPrompt(const char* text, PromptKind kind, PromptButtons buttons) {
    QtPrompts().Show({text, kind, buttons});
}

void AskDelete(AppContext&, QWidget*) {
    ShowPrompt("Are you sure you want to delete PR-101 - Orthophthalic resin? This can not be undone.",
               PromptKind::Question, PromptButtons::YesNo);
}
void TellErrors(AppContext&, QWidget*) {
    ShowPrompt("Error(s) found while processing the form:\r\n\r\n- You must provide Material Type Name.\r\n"
               "- HAP Content limit should be a numeric value(%).\r\n",
               PromptKind::FormErrors, PromptButtons::Ok);
}
void TellFailure(AppContext&, QWidget*) {
    ShowPrompt("The file C:\\MACT\\data\\1_usage.talvor cannot be written: the disk is full.",
               PromptKind::Failure, PromptButtons::Ok);
}
void TellFilter(AppContext&, QWidget*) {
    ShowPrompt("Please select Material Id and/or Year to apply the filter.", PromptKind::Exclamation,
               PromptButtons::Ok);
}

/// Every window, and a message box of each kind.
std::vector<WindowState> AllPictures() {
    const auto asItOpens = [](const QWidget&) {};
    std::vector<WindowState> pictures = AllWindows();
    pictures.insert(pictures.end(), {
                                        {"message_question",    AskDelete,   asItOpens},
                                        {"message_errors",      TellErrors,  asItOpens},
                                        {"message_failure",     TellFailure, asItOpens},
                                        {"message_exclamation", TellFilter,  asItOpens},
    });
    return pictures;
}

bool SavePicture(const WindowState& state, const QString& file) {
    SampleShop shop;
    bool isSaved = false;
    InWindow(state, shop.App, nullptr, [&](QWidget& window) {
        window.grab(); // a first time: a window knows only once painted whether it needs a scroll bar
        QCoreApplication::processEvents();
        isSaved = window.grab().save(file);
    });
    return isSaved;
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 2) {
        std::cerr << "mact_screenshots FOLDER light|dark [NAME...]\n";
        return 2;
    }
    const QString& look = arguments[1];
    const QStringList names = arguments.mid(2);
    QApplication::setStyle(new ProgramStyle);
    ShowWindowsIn(look == QLatin1String("dark") ? Colours::Dark : Colours::Light);
    const int points = qEnvironmentVariableIntValue("MACT_FONT_POINTS");
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), points > 0 ? points : 9));
    QApplication::setCursorFlashTime(0); // a blinking text cursor would be in some pictures and not in others
    const QString scale = application.devicePixelRatio() > 1 ? QStringLiteral("@2x") : QString();

    qsizetype count = 0;
    for (const WindowState& state : AllPictures()) {
        const QString name = QString::fromLatin1(state.Name);
        if (!names.isEmpty() && !names.contains(name)) continue;
        const QString file = arguments[0] + u'/' + name + u'_' + look + scale + QStringLiteral(".png");
        if (!SavePicture(state, file)) {
            std::cerr << file.toStdString() << " cannot be written\n";
            return 1;
        }
        ++count;
    }
    if (!names.isEmpty() && count != names.size()) {
        std::cerr << "There is no window of one of these names: " << names.join(u' ').toStdString() << "\n";
        return 1;
    }
    return 0;
}
