#include "dialogs/program_style.h"

#include "dialogs/pictures.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QIcon>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

namespace mact {
namespace {

struct MessageIcon {
    QStyle::StandardPixmap Standard;
    const char* PictureName;
};
constexpr MessageIcon MessageIcons[] = {
    {QStyle::SP_MessageBoxInformation, "message_information"},
    {QStyle::SP_MessageBoxQuestion,    "message_question"   },
    {QStyle::SP_MessageBoxWarning,     "message_exclamation"},
    {QStyle::SP_MessageBoxCritical,    "message_failure"    },
};

/// `share` of the first colour, and the rest of the second.
QColor Mixed(const QColor& first, const QColor& second, float share) {
    const float rest = 1 - share;
    return QColor::fromRgbF(first.redF() * share + second.redF() * rest,
                            first.greenF() * share + second.greenF() * rest,
                            first.blueF() * share + second.blueF() * rest);
}

/// At least 3 to 1 against window and base, in light and in dark.
QColor BoxOutlineOf(const QStyleOption& option) {
    const QPalette& palette = option.palette;
    if (!(option.state & QStyle::State_Enabled))
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    return Mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.65F);
}

QColor FieldOutlineOf(const QStyleOption& option) {
    const QPalette& palette = option.palette;
    const bool isEnabled = option.state & QStyle::State_Enabled;
    if (isEnabled && option.state & QStyle::State_HasFocus) return palette.color(QPalette::Link);
    return Mixed(palette.color(QPalette::Active, QPalette::WindowText), palette.color(QPalette::Window),
                 isEnabled ? 0.4F : 0.2F);
}

/// The outline in place of the one that was drawn, which is darker than the window: too dark for a dark one.
void DrawOutline(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
    const bool isField = element == QStyle::PE_FrameLineEdit;
    const bool isFocus = element == QStyle::PE_FrameFocusRect;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isFocus   ? option.palette.color(QPalette::Link)
                   : isField ? FieldOutlineOf(option)
                             : BoxOutlineOf(option));
    painter.setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == QStyle::PE_IndicatorRadioButton)
        painter.drawEllipse(outline);
    else if (isField)
        painter.drawRoundedRect(outline, 2, 2);
    else
        painter.drawRect(outline);
    painter.restore();
}

} // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

QIcon ProgramStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                 const QWidget* widget) const {
    const auto* icon = std::ranges::find(MessageIcons, standardIcon, &MessageIcon::Standard);
    if (icon != std::end(MessageIcons)) return ColouredIcon(QString::fromLatin1(icon->PictureName));
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
    case PM_ButtonIconSize:
    case PM_SmallIconSize: {
        const QFont font = widget ? widget->font() : QApplication::font();
        return std::max(pixels, QFontMetrics(font).ascent());
    }
    default:
        return pixels;
    }
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout; // Cancel is last
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;             // the desktop's own
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void ProgramStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    m_tips.Watch(*widget);
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (element != CE_ComboBoxLabel || !combo || combo->editable) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionComboBox shortened(*combo);
    const QRect room = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
    shortened.currentText = combo->fontMetrics.elidedText(combo->currentText, Qt::ElideMiddle, room.width());
    QProxyStyle::drawControl(element, &shortened, painter, widget);
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorRadioButton:
    case PE_FrameLineEdit:
        DrawOutline(element, *option, *painter);
        break;
    case PE_FrameFocusRect: // of whatever has the focus, if it came there by keyboard
        if (option->state & State_KeyboardFocusChange) DrawOutline(element, *option, *painter);
        break;
    default:
        break;
    }
}
} // namespace mact
