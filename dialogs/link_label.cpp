#include "dialogs/link_label.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace mact {
namespace {

class AccessibleLink : public QAccessibleWidget {
public:
    explicit AccessibleLink(LinkLabel& label) : QAccessibleWidget(&label, QAccessible::Link) {}

    QString text(QAccessible::Text kind) const override {
        const QString given = QAccessibleWidget::text(kind);
        return given.isEmpty() && kind == QAccessible::Name ? Label().text() : given;
    }
    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << pressAction(); }
    void doAction(const QString& action) override {
        if (action == pressAction())
            emit Label().Followed();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    LinkLabel& Label() const { return static_cast<LinkLabel&>(*widget()); }
};

QAccessibleInterface* MakeAccessibleLink(const QString&, QObject* object) {
    auto* label = qobject_cast<LinkLabel*>(object);
    return label ? new AccessibleLink(*label) : nullptr;
}

} // namespace

LinkLabel::LinkLabel(QWidget* parent) : QLabel(parent) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(MakeAccessibleLink);
        return true;
    }();
    Q_UNUSED(isInstalled)
    setTextFormat(Qt::PlainText);
    setForegroundRole(QPalette::Link);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
}

void LinkLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) emit Followed();
}

void LinkLabel::keyPressEvent(QKeyEvent* event) {
    const bool follows =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (follows)
        emit Followed();
    else if (event->matches(QKeySequence::Copy))
        QApplication::clipboard()->setText(text());
    else
        QLabel::keyPressEvent(event);
}

void LinkLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    frame.rect = rect();
    frame.backgroundColor = palette().color(QPalette::Window);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
}
} // namespace mact
