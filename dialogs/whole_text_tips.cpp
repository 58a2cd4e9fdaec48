#include "dialogs/whole_text_tips.h"

#include "dialogs/dialog_routines.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QToolTip>

namespace mact {
namespace {

/// Empty if all of it is in view, or if it has a tool tip of its own.
QString CutText(const QComboBox& combo) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    const QRect room =
        combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
    const bool isCut = combo.fontMetrics().horizontalAdvance(combo.currentText()) > room.width();
    return isCut && combo.toolTip().isEmpty() ? combo.currentText() : QString();
}

QString CutText(const QAbstractItemView& view, const QPoint& at) {
    const QModelIndex index = view.indexAt(at);
    if (!index.isValid() || index.data(Qt::ToolTipRole).isValid()) return {};
    const QString text = index.data().toString();
    const int margin = view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1;
    const QRect seen = view.visualRect(index) & view.viewport()->rect();
    return view.fontMetrics().horizontalAdvance(text) + 2 * margin > seen.width() ? text : QString();
}

} // namespace

void WholeTextTips::Watch(QWidget& widget) {
    if (qobject_cast<QComboBox*>(&widget)) widget.installEventFilter(this);
    auto* view = qobject_cast<QAbstractItemView*>(&widget);
    if (!view) return;
    view->viewport()->installEventFilter(this);
    if (view->textElideMode() == Qt::ElideRight) view->setTextElideMode(Qt::ElideMiddle); // Qt's own
}

bool WholeTextTips::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QObject::eventFilter(watched, event);
    const auto& help = *static_cast<QHelpEvent*>(event);
    const auto* combo = qobject_cast<QComboBox*>(watched);
    const auto* view = qobject_cast<QAbstractItemView*>(watched->parent());
    const QString text = combo ? CutText(*combo) : view ? CutText(*view, help.pos()) : QString();
    if (text.isEmpty()) return QObject::eventFilter(watched, event);
    QToolTip::showText(help.globalPos(), ToolTipOf(text), static_cast<QWidget*>(watched));
    return true;
}
} // namespace mact
