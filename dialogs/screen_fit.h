#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace mact {

/// The room for a window on its screen, without the title bar.
QSize RoomFor(const QWidget& window);

/// Gives the window the least size that shows all its texts, as far as there is room on the screen. What has
/// none is scrolled then, while the buttons in the last row stay in view, on several lines if need be.
void FitOnScreen(QWidget& window);

/// Keeps what a window holds within reach, whatever the size of the screen and of the letters: it fits the
/// window on the screen whenever its texts change, and shows what gets the keyboard focus if that is scrolled
/// away.
class ScreenFit : public QObject {
public:
    explicit ScreenFit(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowFocus(const QWidget* control);

    QWidget& m_window;
};
} // namespace mact
