#include "dialogs/elided_label.h"

#include "dialogs/dialog_routines.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace mact {
namespace {

constexpr int FewestLetters = 8; // that there is always room for

/// "&&" is a "&", any other "&" marks the letter after it.
QString WithoutAccelerator(const QString& text) {
    QString plain;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] == u'&' && index + 1 < text.size()) ++index;
        plain += text[index];
    }
    return plain;
}

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QString ElidedLabel::WholeText() const {
    return buddy() ? WithoutAccelerator(text()) : text();
}

QString ElidedLabel::ShownText() const {
    const QString whole = WholeText();
    // Not left to elidedText, which may measure a little more than sizeHint and shorten what has room.
    if (fontMetrics().horizontalAdvance(whole) <= contentsRect().width()) return whole;
    return fontMetrics().elidedText(whole, Qt::ElideMiddle, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    // The advance may have been rounded down, and then the text would lack a fraction of a pixel.
    return {fontMetrics().horizontalAdvance(WholeText()) + 1 + margins.left() + margins.right(),
            fontMetrics().height() + margins.top() + margins.bottom()};
}

QSize ElidedLabel::minimumSizeHint() const {
    const QSize whole = sizeHint();
    return {std::min(whole.width(), FewestLetters * fontMetrics().averageCharWidth()), whole.height()};
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    if (ShownText() == WholeText()) return QLabel::event(event); // its own tool tip, if it has one
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToolTipOf(WholeText()), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    if (ShownText() == WholeText()) { // with its accelerator's line
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    if (hasSelectedText()) painter.fillRect(contentsRect(), palette().highlight());
    style()->drawItemText(&painter, contentsRect(),
                          static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
                          palette(), isEnabled(), ShownText(),
                          hasSelectedText() ? QPalette::HighlightedText : foregroundRole());
}
} // namespace mact
