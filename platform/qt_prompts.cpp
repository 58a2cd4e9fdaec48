#include "platform/qt_prompts.h"

#include "dialogs/screen_fit.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScrollArea>
#include <QStyle>

#include <algorithm>

namespace mact {
namespace {

constexpr int MostLetters = 70;       // in a line of a long text
constexpr qsizetype LongestWord = 60; // that is not broken
constexpr qsizetype LettersPerPart = 20;

QMessageBox::Icon IconOf(PromptKind kind) {
    switch (kind) {
    case PromptKind::Failure:
        return QMessageBox::Critical;
    case PromptKind::Exclamation:
        return QMessageBox::Warning;
    case PromptKind::Question:
        return QMessageBox::Question;
    case PromptKind::FormErrors:
    case PromptKind::Information:
        break;
    }
    return QMessageBox::Information;
}

/// A careless Enter gives the answer that loses nothing.
void SetButtons(QMessageBox& box, PromptButtons buttons) {
    switch (buttons) {
    case PromptButtons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        return;
    case PromptButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        return;
    case PromptButtons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
        return;
    }
}

PromptAnswer AnswerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return PromptAnswer::Yes;
    case QMessageBox::No:
        return PromptAnswer::No;
    case QMessageBox::Cancel:
        return PromptAnswer::Cancel;
    default:
        return PromptAnswer::Ok; // its box has no other answer
    }
}

/// Gives a word that is too long for a line, such as a name without blanks, places where it may be broken.
/// Paths, which people copy out of messages, are broken behind separators by themselves.
QString Breakable(const QString& text) {
    QString breakable;
    qsizetype length = 0; // of the word so far
    for (const QChar letter : text) {
        const bool endsPart = letter.isSpace() || letter == u'/' || letter == u'\\';
        length = endsPart ? 0 : length + 1;
        if (length > LongestWord && length % LettersPerPart == 1 && !letter.isLowSurrogate())
            breakable += QChar(0x200B);
        breakable += letter;
    }
    return breakable;
}

/// Scrolls a text that is too high for the screen; the buttons stay in view.
void FitOnScreen(QMessageBox& box) {
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* buttons = box.findChild<QDialogButtonBox*>();
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!label || !buttons || !grid) return;
    const QMargins margins = grid->contentsMargins();
    const QSize around(box.iconPixmap().deviceIndependentSize().toSize().width() + margins.left() +
                           margins.right() + 3 * grid->horizontalSpacing(),
                       buttons->sizeHint().height() + margins.top() + margins.bottom() +
                           2 * grid->verticalSpacing());
    const QSize room = RoomFor(box) - around;
    const int bar = box.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const int width = std::min(room.width() - bar, MostLetters * label->fontMetrics().averageCharWidth());
    label->setWordWrap(true);
    if (label->heightForWidth(width) <= room.height()) return;
    int row = 0;
    int column = 0;
    int rows = 1;
    int columns = 1;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    auto* area = new QScrollArea(&box);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    // A box turns the wrapping of its text off, and on again only where that is wider than it likes.
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setAccessibleName(box.text()); // Tab leads to it, and arrow keys then scroll
    grid->removeWidget(label);
    area->setWidget(label);
    area->setFixedSize(width + bar, room.height());
    grid->addWidget(area, row, column, rows, columns);
}

/// Gives message boxes the ordinary pointer, even during work that shows the busy one.
class OrdinaryCursor {
public:
    OrdinaryCursor() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
    OrdinaryCursor(const OrdinaryCursor&) = delete;
    OrdinaryCursor& operator=(const OrdinaryCursor&) = delete;
    ~OrdinaryCursor() { QApplication::restoreOverrideCursor(); }
};

} // namespace

PromptAnswer QtPrompts::Show(const Prompt& prompt) {
    const OrdinaryCursor cursor;
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(QStringLiteral("MACT"));
    box.setIcon(IconOf(prompt.Kind));
    box.setTextFormat(Qt::PlainText); // a "<" in a material's name is shown as typed
    // The texts break lines with CR LF, Qt with LF alone.
    box.setText(QString::fromStdString(prompt.Text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    box.setText(Breakable(box.text()));
    SetButtons(box, prompt.Buttons);
    FitOnScreen(box);
    return AnswerOf(box.exec());
}
} // namespace mact
