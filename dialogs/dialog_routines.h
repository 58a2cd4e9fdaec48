#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"

#include <QString>
#include <QStringList>
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

/// What all windows share. Text is converted here, at the controls: a window has QString, everything below it
/// code-page text (records) or UTF-8 (paths and messages).

QString FromCodePage(std::string_view codePageText);
QString FromUtf8(std::string_view text);
/// A character that the code page lacks becomes "?".
std::string ToCodePage(const QString& text);
/// The path with the platform's separators.
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& text);

/// Plain text as a tool tip, which breaks its long lines. Given as it is, a tool tip with "<b>" would be
/// bold.
QString ToolTipOf(const QString& plainText);

/// Turns typed or pasted characters that the code page lacks into "?", and line breaks and tabs into spaces.
void AcceptCodePageText(QLineEdit& edit);

/// Gives the box its window's background while it is disabled, even after a change to dark colours.
void ShowDisabledInWindowColour(QLineEdit& edit);

/// Gives the entries item data 1, 2 and so on, in list order.
void NumberItems(QComboBox& combo);

/// The selected entry's item data or, as code-page text, its text; empty if none is selected.
std::optional<std::int16_t> SelectedData(const QComboBox& combo);
std::optional<std::string> SelectedText(const QComboBox& combo);

/// Gives each listed year item data 0, and lets the user type any other number of up to four digits.
void AcceptAnyYear(QComboBox& year);

/// Of a line in a list: what a RecordList draws at its right end, and screen readers read after its text.
inline constexpr int DetailRole = Qt::UserRole + 1;

/// Fills the list, with item data in Qt::UserRole and no line selected. Fast enough for 32,767 lines.
/// `details` has one for each line, or none at all.
void ShowLines(QListWidget& list, const ListLines& lines, const QStringList& details = {});
void ShowLines(QComboBox& combo, const ListLines& lines);

/// Names the current company in a window's lbl_Company, so that nobody works on the wrong one, to be copied
/// too (MakeCopyable).
void ShowCompany(QLabel& label, const AppContext& app);

/// Reserves the height of `lines` lines of text, whatever the label holds.
void MakeRoomForLines(QLabel& label, int lines);

/// Lets keys select a line when none is selected: an arrow key selects the line with the keyboard focus;
/// Home, End and the page keys select the line they go to.
void SelectByKeys(QListWidget& list);

/// The selected line, or -1. A line that merely has the keyboard focus is not selected.
int SelectedRow(const QListWidget& list);

/// Selects the first line whose item data is the number `value` or, unless `byItemData`, whose text is the
/// same name (IsSameName). Without a match the selection stays; without a value the first line is selected.
void SelectListItem(QListWidget& list, const QVariant& value = {}, bool byItemData = true);
void SelectListItem(QComboBox& combo, const QVariant& value = {}, bool byItemData = true);

/// Enables the first two buttons and makes the first the window's default. The selection buttons are enabled
/// only if a line of the list is selected; then the first of them becomes the default instead.
void SetListButtons(QPushButton* primary = nullptr, QPushButton* second = nullptr,
                    QPushButton* selection = nullptr, QPushButton* secondSelection = nullptr,
                    const QListWidget* list = nullptr);

/// Keeps the window from becoming too small for its texts: wrapped ones need more height the narrower they
/// are, which a dialog's own minimum size ignores. What the screen has no room for is scrolled. To be called
/// again when the texts have changed while the window is open, and their room is needed at once.
void LimitToTexts(QDialog& window);

/// An editor's outcome for its opener: the number in its hidden lbl_result, or -1.
int ResultOf(const QLabel& result);

/// Shows the dialog until it closes, in the size that the user last gave it, which the settings keep under
/// `name` (the object name if left out). It is never larger than the screen nor too small for its texts.
/// Enter presses the button with the keyboard focus, or the default button if no button has it. The mouse
/// wheel changes a combo box only while that has the keyboard focus.
int ShowModally(AppContext& app, QDialog& window, const QString& name = {});

/// Shows the busy pointer during its lifetime.
class BusyCursor {
public:
    BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
    ~BusyCursor();
};
} // namespace mact
