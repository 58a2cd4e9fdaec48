#include "dialogs/dialog_routines.h"

#include "base/numbers.h"
#include "base/text.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QStandardItemModel>

#include <algorithm>
#include <optional>

namespace mact {
namespace {

/// Line breaks, and tabs, which come with pasted text, as spaces: a record's text is one line.
QString InOneLine(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& character : text)
        if (character == u'\r' || character == u'\n' || character == u'\t' || character == u'\u2028' ||
            character == u'\u2029')
            character = u' ';
    return text;
}

/// Lets everything pass, with "?" for each character that the code page lacks.
class CodePageValidator : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& position) const override {
        const QString before = FromCodePage(ToCodePage(InOneLine(text.left(position))));
        const QString after = FromCodePage(ToCodePage(InOneLine(text.mid(position))));
        position = static_cast<int>(before.size()); // a character of two code units is one "?"
        text = before + after;
        return Acceptable;
    }
};

/// Follows the colours of the window.
class DisabledBackground : public QObject {
public:
    explicit DisabledBackground(QLineEdit& edit) : QObject(&edit), m_edit(edit) {
        edit.window()->installEventFilter(this);
        Apply();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) Apply();
        return QObject::eventFilter(watched, event);
    }

private:
    void Apply() {
        QPalette palette = m_edit.palette();
        palette.setColor(QPalette::Disabled, QPalette::Base,
                         m_edit.window()->palette().color(QPalette::Active, QPalette::Window));
        m_edit.setPalette(palette);
    }

    QLineEdit& m_edit;
};

/// Room for the longest line: where all lines have one size, it is that of the last.
void MakeRoomForLongest(QListWidget& list, const QString& longest) {
    constexpr int margins = 12;
    if (list.count() == 0) return;
    const int width = list.fontMetrics().horizontalAdvance(longest) + margins;
    list.item(list.count() - 1)->setSizeHint(QSize(width, list.sizeHintForRow(0)));
}

/// Left to itself, a list moves on from the line that has the focus, and never selects one that it stays on.
class KeySelection : public QObject {
public:
    explicit KeySelection(QListWidget& list) : QObject(&list), m_list(list) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || SelectedRow(m_list) >= 0 || m_list.count() == 0)
            return QObject::eventFilter(watched, event);
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
            SelectCurrent();
            return true;
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            SelectCurrent(); // from where the list moves on, or stays
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void SelectCurrent() { m_list.setCurrentRow(std::max(m_list.currentRow(), 0)); }

    QListWidget& m_list;
};

std::optional<int> RowWithData(const QAbstractItemModel& lines, const QVariant& value) {
    const std::optional<double> number = ParseNumber(value.toString().toStdString());
    for (int row = 0; number && row < lines.rowCount(); ++row)
        if (lines.index(row, 0).data(Qt::UserRole).toDouble() == *number) return row;
    return {};
}

std::optional<int> RowWithText(const QAbstractItemModel& lines, const QVariant& value) {
    const std::string name = ToCodePage(value.toString());
    for (int row = 0; row < lines.rowCount(); ++row)
        if (IsSameName(ToCodePage(lines.index(row, 0).data().toString()), name)) return row;
    return {};
}

/// Empty where the selection stays.
std::optional<int> RowToSelect(const QAbstractItemModel& lines, const QVariant& value, bool byItemData) {
    if (!value.isValid()) return lines.rowCount() > 0 ? 0 : -1;
    return byItemData ? RowWithData(lines, value) : RowWithText(lines, value);
}

} // namespace

QString FromCodePage(std::string_view codePageText) {
    return QString::fromStdString(Utf8FromCodePage(codePageText));
}

std::string ToCodePage(const QString& text) {
    return CodePageFromUtf8(text.toStdString());
}

QString FromPath(const std::filesystem::path& path) {
    return QDir::toNativeSeparators(QString::fromStdString(PathText(path)));
}

std::filesystem::path ToPath(const QString& text) {
    return PathFromUtf8(QDir::toNativeSeparators(text).toStdString());
}

void AcceptCodePageText(QLineEdit& edit) {
    edit.setValidator(new CodePageValidator(&edit));
}

void ShowDisabledInWindowColour(QLineEdit& edit) {
    new DisabledBackground(edit); // belongs to the box
}

void NumberItems(QComboBox& combo) {
    for (int row = 0; row < combo.count(); ++row)
        combo.setItemData(row, row + 1);
}

std::optional<std::int16_t> SelectedData(const QComboBox& combo) {
    if (combo.currentIndex() < 0) return {};
    return static_cast<std::int16_t>(combo.currentData().toInt());
}

std::optional<std::string> SelectedText(const QComboBox& combo) {
    if (combo.currentIndex() < 0) return {};
    return ToCodePage(combo.currentText());
}

void AcceptAnyYear(QComboBox& year) {
    for (int row = 0; row < year.count(); ++row)
        year.setItemData(row, 0);
    year.setEditable(true);
    year.setInsertPolicy(QComboBox::NoInsert);
    year.setCompleter(nullptr); // it would make 2000 of 20
    year.setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), &year));
}

void ShowLines(QListWidget& list, const ListLines& lines) {
    list.setUniformItemSizes(true); // or each of them would be laid out by itself
    list.setUpdatesEnabled(false);
    list.clear();
    QString longest;
    for (const ListLine& line : lines) {
        auto* item = new QListWidgetItem(FromCodePage(line.Text));
        item->setData(Qt::UserRole, line.ItemData);
        list.addItem(item);
        if (item->text().size() > longest.size()) longest = item->text();
    }
    MakeRoomForLongest(list, longest);
    list.setCurrentRow(-1);
    list.setUpdatesEnabled(true);
}

void ShowLines(QComboBox& combo, const ListLines& lines) {
    if (auto* view = qobject_cast<QListView*>(combo.view())) view->setUniformItemSizes(true);
    // One whole model in place of the old one: each line added by itself would select and measure.
    auto* model = new QStandardItemModel(0, 1, &combo);
    QList<QStandardItem*> items;
    items.reserve(static_cast<qsizetype>(lines.size()));
    for (const ListLine& line : lines) {
        auto* item = new QStandardItem(FromCodePage(line.Text));
        item->setData(line.ItemData, Qt::UserRole);
        items.append(item);
    }
    model->invisibleRootItem()->appendRows(items);
    combo.setModel(model); // deletes the old one
    combo.setCurrentIndex(-1);
}

void MakeRoomForLines(QLabel& label, int lines) {
    label.setMinimumHeight(lines * label.fontMetrics().lineSpacing());
}

void SelectByKeys(QListWidget& list) {
    list.installEventFilter(new KeySelection(list));
}

int SelectedRow(const QListWidget& list) {
    const QListWidgetItem* current = list.currentItem();
    return current && current->isSelected() ? list.currentRow() : -1;
}

void SelectListItem(QListWidget& list, const QVariant& value, bool byItemData) {
    if (const auto row = RowToSelect(*list.model(), value, byItemData)) list.setCurrentRow(*row);
}

void SelectListItem(QComboBox& combo, const QVariant& value, bool byItemData) {
    if (const auto row = RowToSelect(*combo.model(), value, byItemData)) combo.setCurrentIndex(*row);
}

void SetListButtons(QPushButton* primary, QPushButton* second, QPushButton* selection,
                    QPushButton* secondSelection, const QListWidget* list) {
    const bool hasSelection = list && SelectedRow(*list) >= 0;
    if (primary) {
        primary->setEnabled(true);
        primary->setDefault(true);
    }
    if (second) second->setEnabled(true);
    if (selection && list) {
        selection->setEnabled(hasSelection);
        selection->setDefault(hasSelection);
    }
    if (secondSelection && list) secondSelection->setEnabled(hasSelection);
}

int ResultOf(const QLabel& result) {
    return ParseInt16(result.text().toStdString()).value_or(-1);
}

BusyCursor::BusyCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyCursor::~BusyCursor() {
    QApplication::restoreOverrideCursor();
}
} // namespace mact
