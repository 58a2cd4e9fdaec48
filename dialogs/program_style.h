#pragma once

#include "dialogs/whole_text_tips.h"

#include <QProxyStyle>

namespace mact {

/// How all windows are drawn: the same on every platform, so that what is measured here is what users see.
/// The icons in message boxes are the program's own, and the outlines of boxes and buttons that can be ticked
/// stand out from what is around them. Boxes and icons grow with the letters. A text that
/// has no room in a combo box or a table is shortened in the middle, with the whole as its tool tip.
class ProgramStyle : public QProxyStyle {
public:
    ProgramStyle();

    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* returned = nullptr) const override;
    void polish(QWidget* widget) override;
    using QProxyStyle::polish; // of a palette or the application
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;

private:
    WholeTextTips m_tips;
};
} // namespace mact
