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

/// The answer that loses nothing is the one that a careless Enter gives.
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
        return PromptAnswer::Ok;
    }
}

/// A box asks with the ordinary pointer, also in the middle of work that shows the busy one.
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
    box.setText(QString::fromStdString(prompt.Text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    SetButtons(box, prompt.Buttons);
    return AnswerOf(box.exec());
}
} // namespace mact
