// Linked into a program with windows: ends it, with status 0, as soon as its first window has been painted.
#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdlib>

namespace {

class QuitAfterPaint : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = event->type() == QEvent::Paint ? qobject_cast<QWidget*>(watched) : nullptr;
        // Runs after the paint events of all its widgets. What follows the paint is not to be measured.
        if (widget && widget->isWindow()) QTimer::singleShot(0, this, [] { std::_Exit(0); });
        return false;
    }
};

void Install() {
    qApp->installEventFilter(new QuitAfterPaint(qApp));
}
Q_COREAPP_STARTUP_FUNCTION(Install)

} // namespace
