#include "dialogs/screen_fit.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>
#include <memory>

namespace mact {
namespace {

const QLatin1String ScrollName("scroll_Window");

/// As narrow as it gets or, if that makes it too high for the room, as wide as the room: wrapped texts need
/// more height the narrower they are, which a layout's own minimum size ignores.
QSize LeastSize(const QLayout& layout, const QSize& room) {
    const QSize least = layout.totalMinimumSize();
    if (!layout.hasHeightForWidth()) return least;
    const QSize narrow = least.expandedTo({0, layout.totalMinimumHeightForWidth(least.width())});
    if (narrow.height() <= room.height() || least.width() >= room.width()) return narrow;
    return least.expandedTo({room.width(), layout.totalMinimumHeightForWidth(room.width())});
}

/// Null if nothing is scrolled, or not yet.
QScrollArea* ScrollOf(const QWidget& window) {
    auto* area = window.findChild<QScrollArea*>(ScrollName, Qt::FindDirectChildrenOnly);
    return area && area->widget() ? area : nullptr;
}

/// Scrolls sideways only what is wider than the screen.
void LimitScrolling(QScrollArea& area, const QSize& room) {
    const int width = area.widget()->minimumSizeHint().width() + area.verticalScrollBar()->sizeHint().width();
    const bool hasRoom = width <= room.width();
    area.setMinimumWidth(hasRoom ? width : 0);
    area.setHorizontalScrollBarPolicy(hasRoom ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
}

bool IsWithin(const QSize& size, const QSize& room) {
    return size.width() <= room.width() && size.height() <= room.height();
}

bool HasButtons(const QLayout& row) {
    for (int index = 0; index < row.count(); ++index)
        if (qobject_cast<QPushButton*>(row.itemAt(index)->widget())) return true;
    return false;
}

/// Takes the window's last row out of its layout if that is the one with the buttons; otherwise null.
QHBoxLayout* TakeButtonRow(QLayout& layout) {
    if (!qobject_cast<QVBoxLayout*>(&layout) || layout.count() < 2) return nullptr;
    auto* row = qobject_cast<QHBoxLayout*>(layout.itemAt(layout.count() - 1)->layout());
    if (!row || !HasButtons(*row)) return nullptr;
    layout.takeAt(layout.count() - 1);
    return row;
}

/// The row on as many lines as it needs; it is the last of them itself.
QVBoxLayout* InLines(QHBoxLayout* row, int width) {
    auto* lines = new QVBoxLayout;
    while (row->count() > 1 && row->minimumSize().width() > width) {
        auto* line = new QHBoxLayout;
        lines->addLayout(line);
        do
            line->addItem(row->takeAt(0));
        while (row->count() > 1 &&
               line->minimumSize().width() + row->spacing() + row->itemAt(0)->minimumSize().width() <= width);
        line->addStretch();
    }
    if (lines->count() > 0 && row->count() == 1) row->insertStretch(0); // its button stays at the right
    lines->addLayout(row);
    return lines;
}

/// Moves what the window holds into a scrolled area, except for the buttons in its last row. The tab order
/// and the keyboard focus stay.
void AddScrolling(QWidget& window, const QSize& room) {
    const QPointer<QWidget> focus = window.focusWidget();
    QLayout* inner = window.layout();
    const QSize whole = LeastSize(*inner, room);
    const QMargins margins = inner->contentsMargins();
    QHBoxLayout* row = TakeButtonRow(*inner);
    auto* area = new QScrollArea(&window);
    area->setObjectName(ScrollName);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // it is no stop on the way with Tab
    area->setWidgetResizable(true);
    auto* content = new QWidget(&window); // of the same window, or the tab order would be lost
    content->setLayout(inner);
    area->setWidget(content);
    auto* outer = new QVBoxLayout(&window);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(area);
    if (row) {
        QVBoxLayout* lines = InLines(row, room.width() - margins.left() - margins.right());
        lines->setContentsMargins(margins.left(), 0, margins.right(), margins.bottom());
        outer->addLayout(lines);
    }
    const QSize bars(area->verticalScrollBar()->sizeHint().width(),
                     area->horizontalScrollBar()->sizeHint().height());
    window.setMinimumSize(0, 0);
    window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX); // it may have been of a fixed size
    window.resize(window.size().expandedTo(whole + bars).boundedTo(room));
    if (window.isVisible()) area->show();
    if (focus) focus->setFocus();
}

/// Scrolls to the control or, if there is not room for all of it, to its beginning. Half of the width will do
/// for a field, whose label is then in view as well.
void Show(const QWidget& control, QScrollArea& area) {
    if (!area.widget() || !area.widget()->isAncestorOf(&control)) return;
    QSize room = area.viewport()->size() - QSize(2, 2); // what is asked for is rounded up below
    if (!qobject_cast<const QAbstractButton*>(&control)) room.rwidth() /= 2;
    const QRect shown(control.mapTo(area.widget(), QPoint(0, 0)), control.size().boundedTo(room));
    area.ensureVisible(shown.center().x(), shown.center().y(), shown.width() / 2 + 1, shown.height() / 2 + 1);
}

} // namespace

QSize RoomFor(const QWidget& window) {
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return window.screen()->availableSize() - QSize(0, titleBar);
}

void FitOnScreen(QWidget& window) {
    if (!window.layout()) return; // also while scrolling is added, which moves the keyboard focus
    const QSize room = RoomFor(window);
    if (!ScrollOf(window) && !IsWithin(LeastSize(*window.layout(), room), room)) AddScrolling(window, room);
    if (QScrollArea* area = ScrollOf(window)) LimitScrolling(*area, room);
    if (window.layout()->hasHeightForWidth())
        window.setMinimumSize(LeastSize(*window.layout(), room).boundedTo(room));
}

ScreenFit::ScreenFit(QWidget& window) : QObject(&window), m_window(window) {
    window.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { ShowFocus(now); });
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) {
        FitOnScreen(m_window);
        if (const QScrollArea* area = ScrollOf(m_window)) area->widget()->installEventFilter(this);
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFit::ShowFocus(const QWidget* control) {
    // What is clicked is in view, and must not move away from under the mouse.
    if (!control || control->window() != &m_window || QApplication::mouseButtons() != Qt::NoButton) return;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // it may be about to move
    for (QWidget* parent = control->parentWidget(); parent; parent = parent->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(parent)) Show(*control, *area);
}
} // namespace mact
