#include "dialogs/message_icons.h"

#include "dialogs/pictures.h"

#include <QIcon>

namespace mact {
namespace {

struct MessageIcon {
    QStyle::StandardPixmap Standard;
    const char* ThemeName;
    const char* PictureName;
};
constexpr MessageIcon MessageIcons[] = {
    {QStyle::SP_MessageBoxInformation, "dialog-information", "message_information"},
    {QStyle::SP_MessageBoxQuestion,    "dialog-question",    "message_question"   },
    {QStyle::SP_MessageBoxWarning,     "dialog-warning",     "message_exclamation"},
    {QStyle::SP_MessageBoxCritical,    "dialog-error",       "message_failure"    },
};

} // namespace

QIcon StyleWithMessageIcons::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                          const QWidget* widget) const {
    for (const MessageIcon& icon : MessageIcons)
        if (icon.Standard == standardIcon && !QIcon::hasThemeIcon(QString::fromLatin1(icon.ThemeName)))
            return QIcon(PictureFile(QString::fromLatin1(icon.PictureName)));
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}
} // namespace mact
