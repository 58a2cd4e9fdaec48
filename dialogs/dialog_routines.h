#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"

#include <QString>
#include <QVariant>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

class QComboBox;
class QDialog;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QWidget;

namespace mact {

/// What every window does alike. Text is converted here, at the controls: QString in the window, code-page
/// text (records) or UTF-8 text (paths and messages) below it.

QString FromCodePage(std::string_view codePageText);
/// A character that the code page lacks becomes "?".
std::string ToCodePage(const QString& text);
/// The path with the platform's separators.
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& text);

/// From now on a character that the code page lacks becomes "?" where it is typed or pasted, and a line break
/// a space.
void AcceptCodePageText(QLineEdit& edit);

/// While it is disabled the box has the background of its window, also when the user turns to dark colours.
void ShowDisabledInWindowColour(QLineEdit& edit);

/// Gives the entries the item data 1, 2 and so on, in the order of the list.
void NumberItems(QComboBox& combo);

/// The selected entry's item data or, as code-page text, its text; empty when none is selected.
std::optional<std::int16_t> SelectedData(const QComboBox& combo);
std::optional<std::string> SelectedText(const QComboBox& combo);

/// A box that holds a list of years, all with item data 0, and takes any other number of up to four digits
/// that is typed.
void AcceptAnyYear(QComboBox& year);

/// Fills the list with the lines, their item data in Qt::UserRole; no line is selected. 32,767 lines are no
/// wait.
void ShowLines(QListWidget& list, const ListLines& lines);
void ShowLines(QComboBox& combo, const ListLines& lines);

/// Room for so many lines of text, whatever the label holds.
void MakeRoomForLines(QLabel& label, int lines);

/// From now on a key that moves through the list selects a line also when none is selected: an arrow key the
/// line that has the keyboard focus, the others the line that they go to.
void SelectByKeys(QListWidget& list);

/// The selected line, or -1. A line that has only the keyboard focus is not selected.
int SelectedRow(const QListWidget& list);

/// Selects the first line whose item data is the number `value` or, unless `byItemData`, whose trimmed text
/// is `value` whatever its case; without one the selection stays. Without a value it selects the first line.
void SelectListItem(QListWidget& list, const QVariant& value = {}, bool byItemData = true);
void SelectListItem(QComboBox& combo, const QVariant& value = {}, bool byItemData = true);

/// Enables the first two buttons, the first one as the window's default. The selection buttons are enabled
/// while the list has a selected line; the first of them is then the default in place of the primary one.
void SetListButtons(QPushButton* primary = nullptr, QPushButton* second = nullptr,
                    QPushButton* selection = nullptr, QPushButton* secondSelection = nullptr,
                    const QListWidget* list = nullptr);

/// What an editor's hidden lbl_result tells its opener: the number that it holds, or -1.
int ResultOf(const QLabel& result);

/// Shows the dialog until it closes, in the size that the user gave it the last time, kept under `name` in
/// the settings (its object name when left out). Never larger than the screen, never too small for its texts.
/// Enter presses the button that has the keyboard focus, and the default button from everywhere else. Turning
/// the mouse wheel over a box of choices changes it only while it has the keyboard focus.
int ShowModally(AppContext& app, QDialog& window, const QString& name = {});

/// The busy pointer, while it lives.
class BusyCursor {
public:
    BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
    ~BusyCursor();
};
} // namespace mact
