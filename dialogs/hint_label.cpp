#include "dialogs/hint_label.h"

#include "dialogs/dialog_routines.h"

#include <QDialog>
#include <QEvent>

namespace mact {

QColor DoubtColour(const QPalette& palette) {
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    return QColor(QLatin1String(isDark ? "#ffc766" : "#8a5a00"));
}

HintLabel::HintLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long hint breaks, and widens nothing
}

void HintLabel::Show(const Hint& hint) {
    const QString text = FromUtf8(hint.Text);
    m_isDoubtful = hint.IsDoubtful;
    ShowColour();
    if (text == this->text()) return;
    setText(text);
    for (QWidget* field : m_fields)
        field->setAccessibleDescription(text); // tells screen readers of the change, too
    if (auto* dialog = qobject_cast<QDialog*>(window()); dialog && dialog->isVisible()) LimitToTexts(*dialog);
}

void HintLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowColour();
}

void HintLabel::ShowColour() {
    QPalette own; // empty: what is not set here follows the window
    if (m_isDoubtful && parentWidget())
        own.setColor(QPalette::WindowText, DoubtColour(parentWidget()->palette()));
    const bool isShown = own.isBrushSet(QPalette::Active, QPalette::WindowText)
                             ? palette().color(QPalette::WindowText) == own.color(QPalette::WindowText)
                             : !testAttribute(Qt::WA_SetPalette);
    if (!isShown) setPalette(own); // which changes the palette, and calls this again
}
} // namespace mact
