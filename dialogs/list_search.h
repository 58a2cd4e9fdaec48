#pragma once

#include <QLabel>
#include <QLineEdit>

class QListWidget;

namespace mact {

/// A line below a list in which one types what to look for: the first line of the list that has it, from the
/// selected one on, is selected as one types. Enter and the down key go on to the next, the up key goes back,
/// Escape ends the search. Hidden until its window's Ctrl+F.
class ListSearch : public QWidget {
    Q_OBJECT

public:
    explicit ListSearch(QWidget* parent = nullptr);

    /// To be called once.
    void Bind(QListWidget& list);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Open();
    void End();
    /// Selects the next line that has the text, `from` that row on, around the end; backwards if `step` is
    /// -1.
    void Find(int from, int step);
    bool Has(int row) const;
    void Tell(const QString& result);

    QListWidget* m_list = nullptr;
    QLabel m_label;
    QLineEdit m_text;
    QLabel m_result;
};
} // namespace mact
