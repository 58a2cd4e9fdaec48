#pragma once

#include <QLabel>

namespace mact {

/// A line of plain text that is a link as a whole: a click, Enter or Space follows it, Ctrl+C copies it.
/// Screen readers know it as one.
class LinkLabel : public QLabel {
    Q_OBJECT

public:
    explicit LinkLabel(QWidget* parent = nullptr);

signals:
    void Followed();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
} // namespace mact
