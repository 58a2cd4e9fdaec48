#include "dialogs/record_list.h"

#include "dialogs/dialog_routines.h"

#include <QPainter>
#include <QStyledItemDelegate>

namespace mact {
namespace {

constexpr int Margin = 4;       // pixels, at the right end of a line
constexpr int EmptyMargin = 16; // pixels, around the text of an empty list

class RecordDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem line = option;
        const bool isSelected = option.state & QStyle::State_Selected;
        const bool hasFocusOnly = !isSelected && (option.state & QStyle::State_HasFocus);
        if (hasFocusOnly) line.state &= ~QStyle::State_HasFocus; // which some styles draw like a selection
        QStyledItemDelegate::paint(painter, line, index);
        const QPalette::ColorGroup group =
            option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
        painter->save();
        painter->setFont(option.font);
        painter->setPen(option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(option.rect.adjusted(Margin, 0, -Margin, 0),
                          Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                          index.data(DetailRole).toString());
        if (hasFocusOnly) {
            painter->setPen(QPen(painter->pen().color(), 1, Qt::DotLine));
            painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
        }
        painter->restore();
    }
};

} // namespace

RecordList::RecordList(QWidget* parent) : QListWidget(parent) {
    setItemDelegate(new RecordDelegate(this));
}

void RecordList::SetEmptyText(const QString& text) {
    m_emptyText = text;
    viewport()->update();
}

void RecordList::Describe(const QString& status) {
    setAccessibleDescription(count() > 0 ? status : status + u'\n' + m_emptyText);
}

void RecordList::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    if (count() > 0 || m_emptyText.isEmpty()) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(EmptyMargin, EmptyMargin, -EmptyMargin, -EmptyMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
}
} // namespace mact
