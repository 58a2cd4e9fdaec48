#pragma once

#include <QProxyStyle>

namespace mact {

/// The platform's style. Where the desktop has no icons for message boxes (Linux without an icon theme), it
/// supplies the program's own, which are sharp at any scale.
class StyleWithMessageIcons : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
};
} // namespace mact
