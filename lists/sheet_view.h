#pragma once

#include <QStyledItemDelegate>
#include <QTableView>

class QCompleter;

namespace mact {

class MonthSheetTable;

/// Writes a cell of the sheet: Enter goes down, Tab to the next cell, and so do the arrows at a text's ends.
class SheetCell : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    /// The Material IDs, sorted ignoring case.
    void Complete(const QStringList& materialIds);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    bool eventFilter(QObject* editor, QEvent* event) override;

signals:
    /// The key ends the cell.
    void KeyToGoOn(int key);

private:
    QCompleter* m_completer = nullptr;
};

/// The table of a month's sheet, worked as in a spreadsheet. Its model is a MonthSheetTable.
class SheetView : public QTableView {
    Q_OBJECT

public:
    explicit SheetView(QWidget* parent = nullptr);

    void ShowTable(MonthSheetTable& table);
    void Complete(const QStringList& materialIds) { m_cell.Complete(materialIds); }
    /// Takes what is being typed.
    void TakeTyped();
    void GoTo(int row, int column);
    /// What is selected; if nothing is, the current cell.
    QItemSelection Chosen() const;

signals:
    void PasteAsked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Nothing: a letter begins to edit, or does nothing.
    void keyboardSearch(const QString&) override {}
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    /// Leaves the cell that was edited, as the key says.
    void GoOn(int key);
    void GoDown();
    /// To the next or the previous cell in which something can be typed. False if there is none.
    bool GoToNextEntry(bool isForward);
    bool ChooseUnit(const QKeyEvent& key);
    /// Of the current cell; null if it is not being edited.
    QWidget* Editor() const;

    SheetCell m_cell;
    MonthSheetTable* m_table = nullptr;
};
} // namespace mact
