#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>

#include <vector>

class QWidget;

namespace mact {

/// How well two colours can be told apart, from 1 to 21: the contrast ratio of the Web Content Accessibility
/// Guidelines 2.1 (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio). Text should have 4.5, the outline of a
/// control 3.
double ContrastOf(const QColor& first, const QColor& second);

/// A piece of text as a widget painted it.
struct PaintedText {
    QString Text;
    QColor Colour;
    QRect Place; ///< in the window; what is scrolled away is left out
};

/// A window, drawn without its texts.
struct PaintedWindow {
    QImage Background;
    std::vector<PaintedText> Texts;
};
PaintedWindow PaintApart(QWidget& window);

/// The contrast of a text with what is behind it. Lines that cross it, such as that of a letter underlined,
/// are left out: the tenth of the pixels with the least contrast does not count.
double ContrastOf(const PaintedText& text, const QImage& background);
} // namespace mact
