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
    QStringList lines = WholeText().split(u'\n');
    const int room = contentsRect().width() - 2 * margin();
    for (QString& line : lines) // elidedText may measure a little more than sizeHint
        if (fontMetrics().horizontalAdvance(line) > room)
            line = fontMetrics().elidedText(line, Qt::ElideMiddle, room);
    return lines.join(u'\n');
}

QSize ElidedLabel::sizeHint() const {
    const QStringList lines = WholeText().split(u'\n');
    int widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, fontMetrics().horizontalAdvance(line));
    const int between = static_cast<int>(lines.size() - 1) * fontMetrics().lineSpacing();
    // The advance may have been rounded down, and then the text would lack a fraction of a pixel.
    return QSize(widest + 1, fontMetrics().height() + between).grownBy(contentsMargins()) +
           2 * QSize(margin(), margin());
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
    style()->drawItemText(&painter, contentsRect().adjusted(margin(), margin(), -margin(), -margin()),
                          static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
                          palette(), isEnabled(), ShownText(),
                          hasSelectedText() ? QPalette::HighlightedText : foregroundRole());
}
} // namespace mact
