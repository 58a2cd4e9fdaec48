#include "dialogs/copyable_label.h"

#include "dialogs/elided_label.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace mact {
namespace {

constexpr const char* Marker = "isCopyable";
constexpr QChar ZeroWidthSpace(0x200B); // where a long name may break

/// Whether Tab stops there. A click goes there in any case.
void SetTabStop(QLabel& label) {
    label.setFocusPolicy(label.text().isEmpty() ? Qt::ClickFocus : Qt::StrongFocus);
}

/// Keeps Tab from stopping at empty labels: nothing tells of a label's new text, so it looks at all of the
/// window's before each Tab.
class TabStops : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && watched->isWidgetType()) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
                for (auto* label : static_cast<QWidget*>(watched)->window()->findChildren<QLabel*>())
                    if (IsCopyable(*label)) SetTabStop(*label);
        }
        return QObject::eventFilter(watched, event);
    }
};

class CopyKeys : public QObject {
public:
    explicit CopyKeys(QLabel& label) : QObject(&label), m_label(label) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::FocusIn:
            return TakeFocus(*event);
        case QEvent::KeyPress:
            return Copies(*static_cast<QKeyEvent*>(event)) || QObject::eventFilter(watched, event);
        case QEvent::Paint:
            return Paint(*event);
        default:
            return QObject::eventFilter(watched, event);
        }
    }

private:
    /// As the label itself does.
    bool PassOn(QEvent& event) { return static_cast<QObject&>(m_label).event(&event); }

    bool TakeFocus(QEvent& event) {
        // Beside a name of its own, a screen reader would not say what there is to copy.
        if (m_label.accessibleName() != m_label.text() && !m_label.accessibleName().isEmpty())
            m_label.setAccessibleDescription(m_label.text());
        PassOn(event);
        const bool isByMouse = static_cast<QFocusEvent&>(event).reason() == Qt::MouseFocusReason;
        if (!isByMouse || IsShortened()) m_label.setSelection(0, SelectableLength());
        return true;
    }

    /// A line end counts once, however it is written.
    int SelectableLength() const {
        return static_cast<int>(m_label.text().replace(QLatin1String("\r\n"), QLatin1String("\n")).size());
    }

    /// Of a text that is not all there to be seen, no part can be selected.
    bool IsShortened() const { return qobject_cast<const ElidedLabel*>(&m_label); }

    bool Copies(const QKeyEvent& key) {
        if (!key.matches(QKeySequence::Copy)) return false;
        QString text = m_label.hasSelectedText() && !IsShortened() ? m_label.selectedText() : m_label.text();
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QChar::ParagraphSeparator, u'\n'); // as a selection has line ends
        text.remove(ZeroWidthSpace);
        QApplication::clipboard()->setText(text);
        return true;
    }

    bool Paint(QEvent& event) {
        PassOn(event);
        if (!m_label.hasFocus()) return true;
        QPainter painter(&m_label);
        QStyleOptionFocusRect frame;
        frame.initFrom(&m_label);
        frame.backgroundColor = m_label.palette().color(QPalette::Window);
        frame.state |= QStyle::State_KeyboardFocusChange; // after a click too
        m_label.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, &m_label);
        return true;
    }

    QLabel& m_label;
};

/// Behind all controls of its window. Qt moves nothing that is next already in the circle, as the first
/// control is behind the last: hence two stand-ins, which are at the end while they live.
void MoveToEndOfTabOrder(QLabel& label) {
    QWidget before(label.window());
    QWidget after(label.window());
    before.setFocusPolicy(Qt::TabFocus);
    after.setFocusPolicy(Qt::TabFocus);
    QWidget::setTabOrder(&before, &label);
}

} // namespace

bool IsCopyable(const QLabel& label) {
    return label.property(Marker).toBool();
}

void MakeCopyable(QLabel& label) {
    static const QPointer<QObject> stops = [] {
        auto* filter = new TabStops(qApp);
        qApp->installEventFilter(filter);
        return filter;
    }();
    Q_UNUSED(stops)
    label.setProperty(Marker, true);
    const bool isShortened = qobject_cast<ElidedLabel*>(&label);
    label.setTextInteractionFlags(isShortened ? Qt::TextInteractionFlags(Qt::TextSelectableByKeyboard)
                                              : Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    SetTabStop(label);
    label.installEventFilter(new CopyKeys(label));
    MoveToEndOfTabOrder(label);
}
} // namespace mact
