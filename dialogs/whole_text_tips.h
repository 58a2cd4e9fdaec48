#pragma once

#include <QObject>

class QWidget;

namespace mact {

/// Shows what a combo box, a table or a list has no room for, as the tool tip of what is cut.
class WholeTextTips : public QObject {
public:
    using QObject::QObject;

    /// To be called for every widget; others than these are left alone.
    void Watch(QWidget& widget);
    bool eventFilter(QObject* watched, QEvent* event) override;
};
} // namespace mact
