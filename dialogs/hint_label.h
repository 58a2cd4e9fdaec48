#pragma once

#include "base/hint.h"

#include <QLabel>

namespace mact {

/// Of a doubt, in words or as a mark: at least 4.5 to 1 against the palette's Window and Base.
QColor DoubtColour(const QPalette& palette);

/// A line or more that follow what is typed. Screen readers read them with the fields that they are about.
class HintLabel : public QLabel {
    Q_OBJECT

public:
    explicit HintLabel(QWidget* parent = nullptr);

    /// To be called once.
    void SetFields(const QList<QWidget*>& fields) { m_fields = fields; }
    /// In amber if it is doubtful.
    void Show(const Hint& hint);

protected:
    void changeEvent(QEvent* event) override;

private:
    void ShowColour();

    QList<QWidget*> m_fields;
    bool m_isDoubtful = false;
};
} // namespace mact
