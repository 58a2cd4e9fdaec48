#include "dialogs/dialog_routines.h"

#include "base/numbers.h"
#include "base/text.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QScreen>

namespace mact {
namespace {

constexpr std::string_view WindowsSection = "WINDOWS";

/// A size as it is kept: width, "x", height, as in 520x304.
std::optional<QSize> ParseSize(std::string_view text) {
    const std::vector<std::string_view> pieces = Split(text, 'x');
    if (pieces.size() != 2) return {};
    const std::optional<std::int16_t> width = ParseInt16(pieces[0]);
    const std::optional<std::int16_t> height = ParseInt16(pieces[1]);
    if (!width || !height) return {};
    return QSize(*width, *height);
}

std::string SizeText(const QSize& size) {
    return WholeNumberText(size.width()) + 'x' + WholeNumberText(size.height());
}

/// Texts that are broken into lines need the more height the narrower they are, which a window's own least
/// size does not consider.
void LimitToTexts(QDialog& window) {
    const QLayout* layout = window.layout();
    if (!layout || !layout->hasHeightForWidth()) return;
    const QSize least = layout->totalMinimumSize();
    window.setMinimumSize(least.expandedTo({0, layout->totalMinimumHeightForWidth(least.width())}));
}

/// A wheel that is turned to scroll past a box of choices is not to change it unnoticed.
class WheelGuard : public QObject {
public:
    explicit WheelGuard(QDialog& window) : QObject(&window) {
        for (auto* combo : window.findChildren<QComboBox*>())
            combo->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel || static_cast<QComboBox*>(watched)->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore(); // whoever scrolls may have it
        return true;
    }
};

/// Enter presses the button that has the keyboard focus, as everywhere else on a desktop. Left to itself a
/// dialog presses its default button: Cancel would save. A key held down presses once: a window that goes to
/// work gives its Cancel button the focus.
class EnterKeyGuard : public QObject {
public:
    explicit EnterKeyGuard(QDialog& window) : QObject(&window) {
        for (auto* button : window.findChildren<QAbstractButton*>())
            if (!button->isCheckable()) button->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter)
            return QObject::eventFilter(watched, event);
        if (!key->isAutoRepeat()) static_cast<QAbstractButton*>(watched)->click();
        return true;
    }
};

/// The size of the window, of a maximised one that which it goes back to.
QSize OwnSize(const QDialog& window) {
    return window.isMaximized() ? window.normalGeometry().size() : window.size();
}

} // namespace

int ShowModally(AppContext& app, QDialog& window, const QString& name) {
    LimitToTexts(window);
    const std::string key = (name.isEmpty() ? window.objectName() : name).toStdString();
    const QSize shown = ParseSize(app.Settings.Read(WindowsSection, key))
                            .value_or(window.size())
                            .expandedTo(window.minimumSizeHint())
                            .expandedTo(window.minimumSize())
                            .boundedTo(window.screen()->availableSize());
    window.resize(shown);
    const WheelGuard wheelGuard(window);
    const EnterKeyGuard enterKeyGuard(window);
    const int result = window.exec();
    // A size that cannot be kept is not worth a message.
    if (OwnSize(window) != shown)
        static_cast<void>(app.Settings.Write(WindowsSection, key, SizeText(OwnSize(window))));
    return result;
}
} // namespace mact
