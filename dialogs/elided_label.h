#pragma once

#include <QLabel>

namespace mact {

/// Plain text that never widens its window: what has no room in a line is left out of its middle, and the
/// tool tip has the whole. text() stays the whole, too.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// The text as it is painted, without the accelerator's "&".
    QString ShownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// The text without its accelerator's "&", if it has a buddy; otherwise as it is.
    QString WholeText() const;
};
} // namespace mact
