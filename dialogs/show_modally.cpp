#include "dialogs/dialog_routines.h"

#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/screen_fit.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QResizeEvent>

namespace mact {
namespace {

constexpr std::string_view WindowsSection = "WINDOWS";

/// A size as the settings have it: width, "x", height, as in 520x304.
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

/// Keeps a wheel that is turned to scroll past a combo box from changing it unnoticed.
class WheelGuard : public QObject {
public:
    explicit WheelGuard(QDialog& window) : QObject(&window) {
        for (auto* combo : window.findChildren<QComboBox*>())
            combo->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel || static_cast<QComboBox*>(watched)->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore(); // leaves it to whatever scrolls
        return true;
    }
};

/// Makes Enter press the button with the keyboard focus, as elsewhere on a desktop. By default a dialog would
/// press its default button, so that Enter on Cancel would save. A key held down presses once: a window that
/// starts to work gives Cancel the focus, and the repeats would press that.
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

/// Learns whether the user gives the window another size. A layout that needs more room than there is, as for
/// a longer hint, enlarges the window to its new minimum size: that is not the user's doing.
class SizeWatch : public QObject {
public:
    explicit SizeWatch(QDialog& window) : QObject(&window), m_window(window) {
        window.installEventFilter(this);
    }

    bool IsChangedByUser() const { return m_isChanged; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize) {
            const auto* resize = static_cast<QResizeEvent*>(event);
            const QSize grown = resize->oldSize().expandedTo(m_window.minimumSize());
            if (resize->oldSize().isValid() && resize->size() != grown) m_isChanged = true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QDialog& m_window;
    bool m_isChanged = false;
};

/// The window's size or, if it is maximised, the size that it will go back to.
QSize OwnSize(const QDialog& window) {
    return window.isMaximized() ? window.normalGeometry().size() : window.size();
}

} // namespace

void LimitToTexts(QDialog& window) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // what has changed inside
    FitOnScreen(window);
}

int ShowModally(AppContext& app, QDialog& window, const QString& name) {
    LimitToTexts(window);
    const std::string key = (name.isEmpty() ? window.objectName() : name).toStdString();
    // The screen comes last: the size may have been kept on a larger one.
    const QSize shown = ParseSize(app.Settings.Read(WindowsSection, key))
                            .value_or(window.size())
                            .expandedTo(window.minimumSizeHint())
                            .expandedTo(window.minimumSize())
                            .boundedTo(RoomFor(window));
    window.resize(shown);
    // Children of the window, but on the stack: they are destroyed first, and leave it.
    const ScreenFit screenFit(window);
    const WheelGuard wheelGuard(window);
    const EnterKeyGuard enterKeyGuard(window);
    const SizeWatch size(window);
    const int result = window.exec();
    // Only a size that the user changed is kept, and failing to keep it is not worth a message.
    if (size.IsChangedByUser() && OwnSize(window) != shown)
        static_cast<void>(app.Settings.Write(WindowsSection, key, SizeText(OwnSize(window))));
    return result;
}
} // namespace mact
