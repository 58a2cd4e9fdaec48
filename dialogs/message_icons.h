#pragma once

#include <QProxyStyle>

namespace mact {

/// The platform's look. Where the desktop has no icons for message boxes (a Linux without an icon theme),
/// they get the program's own, which are sharp at any scale.
class StyleWithMessageIcons : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
};
} // namespace mact
