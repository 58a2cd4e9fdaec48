#include "dialogs/dialog_routines.h"

#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"

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
#include <utility>

namespace mact {
namespace {

/// Turns line breaks and tabs, which pasted text may hold, into spaces: a record's text is one line.
QString InOneLine(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& character : text)
        if (character == u'\r' || character == u'\n' || character == u'\t' || character == u'\u2028' ||
            character == u'\u2029')
            character = u' ';
    return text;
}

/// Rejects nothing, but puts "?" for each character that the code page lacks.
class CodePageValidator : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& position) const override {
        // In two halves, because the length of the first is where the cursor has to go.
        const QString before = FromCodePage(ToCodePage(InOneLine(text.left(position))));
        const QString after = FromCodePage(ToCodePage(InOneLine(text.mid(position))));
        position = static_cast<int>(before.size()); // two code units may have become one "?"
        text = before + after;
        return Acceptable;
    }
};

/// Follows the window's colours.
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

/// A line with a detail, which is not part of its text.
class RecordLine : public QListWidgetItem {
public:
    RecordLine(const QString& text, QString detail) : QListWidgetItem(text), m_detail(std::move(detail)) {}

    QVariant data(int role) const override {
        if (m_detail.isEmpty() || (role != DetailRole && role != Qt::AccessibleTextRole))
            return QListWidgetItem::data(role);
        return role == DetailRole ? m_detail : text() + QStringLiteral(", ") + m_detail;
    }

private:
    QString m_detail;
};

const QString DetailGap = QStringLiteral("      "); // between a line's text and its detail, at least

/// Lets the user scroll to the end of the longest line: lines of uniform size all take that of the last.
void MakeRoomForLongest(QListWidget& list, const QString& longest) {
    constexpr int margins = 12; // pixels
    if (list.count() == 0) return;
    const int width = list.fontMetrics().horizontalAdvance(longest) + margins;
    list.item(list.count() - 1)->setSizeHint(QSize(width, list.sizeHintForRow(0)));
}

/// By default a key moves on from the line with the focus, and selects nothing if it cannot move.
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
            return true; // or the list would move on as well
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            SelectCurrent(); // the list then moves on, or stays there
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

/// Empty if the selection is to stay.
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

QString FromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString FromPath(const std::filesystem::path& path) {
    return QDir::toNativeSeparators(QString::fromStdString(PathText(path)));
}

std::filesystem::path ToPath(const QString& text) {
    return PathFromUtf8(QDir::toNativeSeparators(text).toStdString());
}

QString ToolTipOf(const QString& plainText) {
    // The tag in front, since escaped text alone need not be taken for rich text: "&quot;" would be shown.
    return QStringLiteral("<qt>") +
           plainText.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

void AcceptCodePageText(QLineEdit& edit) {
    edit.setValidator(new CodePageValidator(&edit));
}

void ShowDisabledInWindowColour(QLineEdit& edit) {
    new DisabledBackground(edit); // owned by the box
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
    year.setInsertPolicy(QComboBox::NoInsert); // Enter would add the year to the list
    year.setCompleter(nullptr);                // it would complete 20 to 2000
    year.setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), &year));
}

void ShowLines(QListWidget& list, const ListLines& lines, const QStringList& details) {
    list.setUniformItemSizes(true); // otherwise each line is measured by itself
    list.setUpdatesEnabled(false);
    list.clear();
    QString longest; // in characters: measuring every line is what uniform sizes avoid
    for (const ListLine& line : lines) {
        const QString detail = details.value(list.count());
        auto* item = new RecordLine(FromCodePage(line.Text), detail);
        item->setData(Qt::UserRole, line.ItemData);
        list.addItem(item);
        if (item->text().size() + detail.size() > longest.size())
            longest = detail.isEmpty() ? item->text() : item->text() + DetailGap + detail;
    }
    MakeRoomForLongest(list, longest);
    list.setCurrentRow(-1);
    list.setUpdatesEnabled(true);
}

void ShowLines(QComboBox& combo, const ListLines& lines) {
    if (auto* view = qobject_cast<QListView*>(combo.view())) view->setUniformItemSizes(true);
    // A whole new model: the box would select and measure with each line that is added to the old one.
    auto* model = new QStandardItemModel(0, 1, &combo);
    QList<QStandardItem*> items;
    items.reserve(static_cast<qsizetype>(lines.size()));
    for (const ListLine& line : lines) {
        auto* item = new QStandardItem(FromCodePage(line.Text));
        item->setData(line.ItemData, Qt::UserRole);
        items.append(item);
    }
    model->invisibleRootItem()->appendRows(items);
    combo.setModel(model); // deletes the old model
    combo.setCurrentIndex(-1);
}

void ShowCompany(QLabel& label, const AppContext& app) {
    label.setText(QStringLiteral("Company: ") +
                  FromCodePage(app.CurrentCompanyName + ", " + app.CurrentCompanyLocation));
    MakeCopyable(label);
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
    // After the primary button: a window has one default button, the last that was made so.
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
