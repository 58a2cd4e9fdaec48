#pragma once

#include "dialogs/window_colours.h"

#include <QObject>

#include <memory>
#include <optional>

class QVariant;

namespace mact {

/// The colours that the user's desktop asks of programs.
class DesktopColours : public QObject {
    Q_OBJECT

public:
    /// Empty if the desktop has not said, or not yet.
    std::optional<Colours> Asked() const { return m_asked; }
    /// What the desktop says now.
    void Hear(std::optional<Colours> colours);

signals:
    void Changed();

private:
    std::optional<Colours> m_asked;
};

/// Asks the desktop, without waiting for its answer: the registry on Windows; elsewhere the desktop portal,
/// which GNOME, KDE and others have, and which also tells of changes.
std::unique_ptr<DesktopColours> AskDesktop();

/// What Windows means by the value "AppsUseLightTheme", which it may not have.
std::optional<Colours> ColoursOfTheme(const QVariant& appsUseLightTheme);
} // namespace mact
