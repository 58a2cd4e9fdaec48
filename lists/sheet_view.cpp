#include "lists/sheet_view.h"

#include "dialogs/dialog_routines.h"
#include "lists/month_sheet_table.h"
#include "materials/units.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStringListModel>

namespace mact {
namespace {

bool IsEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// Whether the key leaves a text in which it has nothing to do.
bool LeavesText(const QLineEdit& edit, const QKeyEvent& key) {
    if (IsEnter(key.key()) || key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) return true;
    if (key.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) return false;
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    case Qt::Key_Left:
        return edit.cursorPosition() == 0 && !edit.hasSelectedText();
    case Qt::Key_Right:
        return edit.cursorPosition() == edit.text().size() && !edit.hasSelectedText();
    default:
        return false;
    }
}

} // namespace

void SheetCell::Complete(const QStringList& materialIds) {
    delete m_completer;
    m_completer = new QCompleter(materialIds, this);
    m_completer->setCaseSensitivity(Qt::CaseInsensitive);
    m_completer->setModelSorting(QCompleter::CaseInsensitivelySortedModel);
    // In the cell itself: a list that drops down would take Enter and the arrows for itself.
    m_completer->setCompletionMode(QCompleter::InlineCompletion);
}

QWidget* SheetCell::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                 const QModelIndex& index) const {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QStringLiteral("txt_Cell"));
    edit->setAccessibleName(
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    edit->setFrame(false);
    AcceptCodePageText(*edit);
    if (index.column() == MonthSheetTable::MaterialId)
        edit->setCompleter(m_completer);
    else
        edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return edit;
}

bool SheetCell::eventFilter(QObject* editor, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (LeavesText(static_cast<QLineEdit&>(*editor), key)) {
            emit KeyToGoOn(key.key());
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

SheetView::SheetView(QWidget* parent) : QTableView(parent) {
    setItemDelegate(&m_cell);
    connect(&m_cell, &SheetCell::KeyToGoOn, this, &SheetView::GoOn);
}

void SheetView::ShowTable(MonthSheetTable& table) {
    m_table = &table;
    setModel(&table);
    connect(&table, &MonthSheetTable::MaterialChosen, this,
            [this](int row) { GoTo(row, MonthSheetTable::Quantity); });
}

QWidget* SheetView::Editor() const {
    return currentIndex().isValid() ? indexWidget(currentIndex()) : nullptr;
}

void SheetView::TakeTyped() {
    QWidget* const editor = Editor();
    if (!editor) return;
    const QPersistentModelIndex edited = currentIndex();
    commitData(editor);
    if (indexWidget(edited) == editor) // a Material ID has gone on to its row
        closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void SheetView::GoTo(int row, int column) {
    setCurrentIndex(model()->index(row, column));
}

QItemSelection SheetView::Chosen() const {
    const QItemSelection selected = selectionModel()->selection();
    if (!selected.isEmpty() || !currentIndex().isValid()) return selected;
    return {currentIndex(), currentIndex()};
}

void SheetView::GoOn(int key) {
    const QPersistentModelIndex before = currentIndex();
    TakeTyped();
    setFocus();
    if (before != currentIndex()) return; // on to the row of the Material ID that was typed
    if (IsEnter(key)) {
        GoDown();
    } else if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        focusNextPrevChild(key == Qt::Key_Tab); // by keyPressEvent, and after the last cell out of the table
    } else {
        QKeyEvent arrow(QEvent::KeyPress, key, Qt::NoModifier);
        QTableView::keyPressEvent(&arrow);
    }
}

void SheetView::GoDown() {
    const int row = currentIndex().row() + 1;
    if (row >= model()->rowCount()) return;
    GoTo(row, m_table->IsIdRow(row) ? int{MonthSheetTable::MaterialId} : currentIndex().column());
}

bool SheetView::GoToNextEntry(bool isForward) {
    int row = currentIndex().row();
    int column = currentIndex().column();
    const int columns = model()->columnCount();
    while (row >= 0 && row < model()->rowCount()) {
        column += isForward ? 1 : -1;
        if (column < 0 || column >= columns) {
            row += isForward ? 1 : -1;
            column = isForward ? 0 : columns - 1;
        }
        const QModelIndex next = model()->index(row, column);
        if (!m_table->IsEntry(next)) continue;
        setCurrentIndex(next);
        return true;
    }
    return false;
}

bool SheetView::ChooseUnit(const QKeyEvent& key) {
    const QModelIndex current = currentIndex();
    if (current.column() != MonthSheetTable::Unit || !m_table->IsEntry(current)) return false;
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
    switch (key.key()) {
    case Qt::Key_M:
        m_table->ChooseUnit(current.row(), UnitMgal);
        return true;
    case Qt::Key_L:
        m_table->ChooseUnit(current.row(), UnitLbs);
        return true;
    case Qt::Key_Space:
    case Qt::Key_F2:
    case Qt::Key_F4:
        m_table->ToggleUnit(current.row());
        return true;
    default:
        return false;
    }
}

void SheetView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) {
        event->setAccepted(GoToNextEntry(event->key() == Qt::Key_Tab)); // at the end, out of the table
    } else if (event->key() == Qt::Key_Escape) {
        event->ignore();
    } else if (IsEnter(event->key())) {
        GoDown();
        event->accept(); // or the default button would be pressed
    } else if (event->matches(QKeySequence::Paste)) {
        emit PasteAsked();
    } else if (event->key() == Qt::Key_Delete) {
        m_table->Empty(Chosen());
    } else if (!ChooseUnit(*event)) {
        QTableView::keyPressEvent(event);
    }
}

QModelIndex SheetView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex next = QTableView::moveCursor(action, modifiers);
    const QModelIndex current = currentIndex();
    const bool isFromIdRow =
        m_table->IsIdRow(current.row()) && current.column() == MonthSheetTable::MaterialId;
    // Back to where Enter came from: above the empty row, no Material ID can be typed.
    if (action == MoveUp && isFromIdRow && next != current && !(modifiers & Qt::ShiftModifier))
        return next.siblingAtColumn(MonthSheetTable::Quantity);
    return next;
}

void SheetView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex clicked = indexAt(event->position().toPoint());
    if (clicked.column() == MonthSheetTable::Unit && m_table->IsEntry(clicked))
        m_table->ToggleUnit(clicked.row());
    else
        QTableView::mouseDoubleClickEvent(event);
}
} // namespace mact
