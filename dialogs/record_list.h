#pragma once

#include <QListWidget>

namespace mact {

/// A list of records. The detail of a line (ShowLines) is drawn at its right end. A line that merely has the
/// keyboard focus does not look selected.
class RecordList : public QListWidget {
    Q_OBJECT

public:
    explicit RecordList(QWidget* parent = nullptr);

    /// What an empty list says, as what to do first. Painted, so that the list stays without an entry.
    void SetEmptyText(const QString& text);
    /// What screen readers say of the list, with the text of an empty one. To be called after a change.
    void Describe(const QString& status);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_emptyText;
};
} // namespace mact
