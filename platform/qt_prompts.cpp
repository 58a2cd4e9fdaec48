#include "platform/qt_prompts.h"

#include <QApplication>
#include <QMessageBox>

namespace mact {
namespace {

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
    SetButtons(box, prompt.Buttons);
    return AnswerOf(box.exec());
}
} // namespace mact
