#include "dialogs/message_icons.h"
#include "platform/qt_prompts.h"
#include "tests/support/all_windows.h"
#include "tests/support/sample_shop.h"

#include <QApplication>
#include <QPalette>
#include <QPixmap>

#include <algorithm>
#include <iostream>

using namespace mact;

// mact_screenshots FOLDER light|dark [NAME...]
//
// Draws all windows, or those named, with the sample shop in them, as FOLDER/NAME_light.png.
// QT_SCALE_FACTOR=2 makes it NAME_light@2x.png.

namespace {

struct Colour {
    QPalette::ColorRole Role;
    const char* Light;
    const char* Dark;
};
constexpr Colour Colours[] = {
    {QPalette::Window,          "#f3f3f3", "#2b2d30"},
    {QPalette::WindowText,      "#1b1b1b", "#e4e6ea"},
    {QPalette::Base,            "#ffffff", "#1f2023"},
    {QPalette::AlternateBase,   "#f7f7f7", "#27292c"},
    {QPalette::Text,            "#1b1b1b", "#e4e6ea"},
    {QPalette::Button,          "#f6f6f6", "#3a3d41"},
    {QPalette::ButtonText,      "#1b1b1b", "#e4e6ea"},
    {QPalette::BrightText,      "#ffffff", "#ffffff"},
    {QPalette::Highlight,       "#1f6fb2", "#2f7fc4"},
    {QPalette::HighlightedText, "#ffffff", "#ffffff"},
    {QPalette::ToolTipBase,     "#ffffe1", "#3a3d41"},
    {QPalette::ToolTipText,     "#1b1b1b", "#e4e6ea"},
    {QPalette::PlaceholderText, "#767676", "#8d9096"},
    {QPalette::Link,            "#1f6fb2", "#6cb3ee"},
    {QPalette::Light,           "#ffffff", "#4a4d52"},
    {QPalette::Midlight,        "#eaeaea", "#404347"},
    {QPalette::Mid,             "#b8b8b8", "#232528"},
    {QPalette::Dark,            "#9f9f9f", "#1b1c1f"},
    {QPalette::Shadow,          "#707070", "#101113"},
};
constexpr QPalette::ColorRole Texts[] = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::HighlightedText};

QPalette PaletteOf(bool isDark) {
    QPalette palette;
    for (const Colour& colour : Colours)
        palette.setColor(colour.Role, QColor(isDark ? colour.Dark : colour.Light));
    for (const QPalette::ColorRole role : Texts)
        palette.setColor(QPalette::Disabled, role, QColor(isDark ? "#a0a3a9" : "#8a8a8a"));
    palette.setColor(QPalette::Disabled, QPalette::Base, palette.color(QPalette::Window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(isDark ? "#4a4d52" : "#c4c4c4"));
    return palette;
}

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
    QApplication::setStyle(new StyleWithMessageIcons(QStringLiteral("Fusion")));
    QApplication::setPalette(PaletteOf(look == QLatin1String("dark")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
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
