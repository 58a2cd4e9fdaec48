#include "dialogs/list_search.h"

#include "dialogs/dialog_routines.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QShortcut>

#include <algorithm>

namespace mact {

ListSearch::ListSearch(QWidget* parent) : QWidget(parent) {
    m_label.setText(QStringLiteral("&Find :"));
    m_label.setTextFormat(Qt::PlainText);
    m_label.setObjectName(QStringLiteral("lbl_Find"));
    m_label.setBuddy(&m_text);
    m_text.setObjectName(QStringLiteral("txt_Find"));
    m_text.setAccessibleName(QStringLiteral("Find in the list"));
    m_text.installEventFilter(this);
    m_result.setTextFormat(Qt::PlainText);
    m_result.setObjectName(QStringLiteral("lbl_Found"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(&m_label);
    layout->addWidget(&m_text, 1);
    layout->addWidget(&m_result);
    setFocusProxy(&m_text);
    hide();
}

void ListSearch::Bind(QListWidget& list) {
    m_list = &list;
    connect(&m_text, &QLineEdit::textEdited, this, [this] { Find(std::max(SelectedRow(*m_list), 0), 1); });
    connect(new QShortcut(QKeySequence::Find, window()), &QShortcut::activated, this, &ListSearch::Open);
}

void ListSearch::Open() {
    Tell({});
    show();
    m_text.setFocus();
    m_text.selectAll();
}

void ListSearch::End() {
    m_list->setFocus();
    hide();
}

bool ListSearch::Has(int row) const {
    return m_list->item(row)->text().contains(m_text.text(), Qt::CaseInsensitive);
}

void ListSearch::Find(int from, int step) {
    Tell({});
    const int count = m_list->count();
    if (m_text.text().isEmpty()) return;
    for (int tried = 0; tried < count; ++tried) {
        const int row = ((from + tried * step) % count + count) % count;
        if (!Has(row)) continue;
        m_list->setCurrentRow(row);
        return;
    }
    Tell(QStringLiteral("in no line"));
}

void ListSearch::Tell(const QString& result) {
    m_result.setText(result);
    m_text.setAccessibleDescription(result);
}

bool ListSearch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        Find(SelectedRow(*m_list) + 1, 1);
        return true;
    case Qt::Key_Up:
        Find(std::max(SelectedRow(*m_list), 0) - 1, -1);
        return true;
    case Qt::Key_Escape:
        End();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}
} // namespace mact
