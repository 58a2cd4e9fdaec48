#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>

namespace mact {

/// The program's own drawings, as make_pictures.sh has made them: sharp up to three times their usual size.

/// A line drawing in the palette's colours, legible on light and on dark; `name` is that of its file.
QIcon LineIcon(const QString& name);

/// A drawing in its own colours, as in a message box; `name` is that of its file.
QIcon ColouredIcon(const QString& name);

/// The program's emblem, in its own colours.
QIcon EmblemIcon();

/// The picture of the main window, of 560x190.
QIcon MainPicture();

/// Shows a picture as large as the control is.
class PictureView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    void SetPicture(const QIcon& picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_picture;
};
} // namespace mact
