#include "dialogs/window_colours.h"

#include <QApplication>
#include <QToolTip>

namespace mact {
namespace {

struct Shades {
    const char* Active;
    const char* Inactive;
    const char* Disabled;
};
struct RoleColours {
    QPalette::ColorRole Role;
    Shades Light;
    Shades Dark;
};
// clang-format off: a table that can be read across
constexpr RoleColours AllRoles[] = {
    {QPalette::Window,          {"#f3f3f3", "#f3f3f3", "#f3f3f3"}, {"#2b2d30", "#2b2d30", "#2b2d30"}},
    {QPalette::WindowText,      {"#1b1b1b", "#1b1b1b", "#787878"}, {"#e4e6ea", "#e4e6ea", "#92959b"}},
    {QPalette::Base,            {"#ffffff", "#ffffff", "#f3f3f3"}, {"#1f2023", "#1f2023", "#2b2d30"}},
    {QPalette::AlternateBase,   {"#f7f7f7", "#f7f7f7", "#f3f3f3"}, {"#27292c", "#27292c", "#2b2d30"}},
    {QPalette::Text,            {"#1b1b1b", "#1b1b1b", "#787878"}, {"#e4e6ea", "#e4e6ea", "#92959b"}},
    {QPalette::PlaceholderText, {"#63676d", "#63676d", "#787878"}, {"#a0a4aa", "#a0a4aa", "#92959b"}},
    {QPalette::Button,          {"#f6f6f6", "#f6f6f6", "#f3f3f3"}, {"#3a3d41", "#3a3d41", "#303236"}},
    {QPalette::ButtonText,      {"#1b1b1b", "#1b1b1b", "#787878"}, {"#e4e6ea", "#e4e6ea", "#92959b"}},
    {QPalette::BrightText,      {"#b3261e", "#b3261e", "#787878"}, {"#ff8a80", "#ff8a80", "#92959b"}},
    {QPalette::Highlight,       {"#1f6fb2", "#cddbe8", "#c4c4c4"}, {"#2671b0", "#3d4f60", "#4a4d52"}},
    {QPalette::HighlightedText, {"#ffffff", "#1b1b1b", "#5c5c5c"}, {"#ffffff", "#e4e6ea", "#b4b7bd"}},
    {QPalette::Link,            {"#1b66a6", "#1b66a6", "#787878"}, {"#6cb3ee", "#6cb3ee", "#92959b"}},
    {QPalette::LinkVisited,     {"#7a3e9d", "#7a3e9d", "#787878"}, {"#d9a6f2", "#d9a6f2", "#92959b"}},
    {QPalette::ToolTipBase,     {"#ffffe1", "#ffffe1", "#ffffe1"}, {"#3a3d41", "#3a3d41", "#3a3d41"}},
    {QPalette::ToolTipText,     {"#1b1b1b", "#1b1b1b", "#1b1b1b"}, {"#e4e6ea", "#e4e6ea", "#e4e6ea"}},
    {QPalette::Light,           {"#ffffff", "#ffffff", "#ffffff"}, {"#4a4d52", "#4a4d52", "#4a4d52"}},
    {QPalette::Midlight,        {"#eaeaea", "#eaeaea", "#eaeaea"}, {"#404347", "#404347", "#404347"}},
    {QPalette::Mid,             {"#b8b8b8", "#b8b8b8", "#b8b8b8"}, {"#5a5d63", "#5a5d63", "#5a5d63"}},
    {QPalette::Dark,            {"#9f9f9f", "#9f9f9f", "#9f9f9f"}, {"#1b1c1f", "#1b1c1f", "#1b1c1f"}},
    {QPalette::Shadow,          {"#707070", "#707070", "#707070"}, {"#101113", "#101113", "#101113"}},
};
// clang-format on

} // namespace

QPalette PaletteOf(Colours colours) {
    QPalette palette;
    for (const RoleColours& role : AllRoles) {
        const Shades& shades = colours == Colours::Dark ? role.Dark : role.Light;
        palette.setColor(QPalette::Active, role.Role, QColor(shades.Active));
        palette.setColor(QPalette::Inactive, role.Role, QColor(shades.Inactive));
        palette.setColor(QPalette::Disabled, role.Role, QColor(shades.Disabled));
    }
    return palette;
}

void ShowWindowsIn(Colours colours) {
    const QPalette palette = PaletteOf(colours);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}
} // namespace mact
