#include "dialogs/undo_button.h"

#include "base/messages.h"
#include "dialogs/dialog_routines.h"

#include <QShortcut>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>

namespace mact {
namespace {

constexpr std::size_t MostReasons = 3; // in one message

std::string Joined(const HistoryRefusal& refusal) {
    const std::vector<std::string>& reasons = refusal.Reasons;
    std::string joined;
    for (std::size_t index = 0; index < std::min(reasons.size(), MostReasons); ++index)
        joined += (index > 0 ? "; " : "") + reasons[index];
    if (reasons.size() > MostReasons)
        joined += "; and " + std::to_string(reasons.size() - MostReasons) + " more";
    return joined + (refusal.IsForGood ? "; it is left out from now on" : "");
}

} // namespace

UndoButton::UndoButton(QWidget* parent) : QPushButton(parent) {
    setText(QStringLiteral("&Undo"));
    setAutoDefault(false);
    // Whatever its text, it takes the width that there is.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    hide();
    connect(this, &QPushButton::clicked, this, &UndoButton::Undo);
}

void UndoButton::Bind(AppContext& app, List list) {
    m_app = &app;
    m_list = std::move(list);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), window()), &QShortcut::activated, this,
            &UndoButton::Undo);
    for (const QKeySequence& keys :
         {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)})
        connect(new QShortcut(keys, window()), &QShortcut::activated, this, &UndoButton::Redo);
    ShowStep();
}

void UndoButton::ShowStep() {
    if (!m_app->Changes) return;
    const HistoryStep* const undo = m_app->Changes->ToUndo(m_list.Whose());
    const HistoryStep* const redo = m_app->Changes->ToRedo(m_list.Whose());
    m_text = undo ? QStringLiteral("Undo: ") + FromUtf8(undo->Name) : QStringLiteral("Undo: nothing left");
    QString toolTip = m_text;
    if (undo) toolTip += QStringLiteral(" (Ctrl+Z).");
    if (undo && undo->HasAdded)
        toolTip += QStringLiteral(" The records are marked as deleted: their numbers are not used again, "
                                  "and exports still contain them, as all deleted records.");
    if (redo) toolTip += QStringLiteral(" Ctrl+Y does again: ") + FromUtf8(redo->Name) + '.';
    setToolTip(ToolTipOf(toolTip));
    setAccessibleName(m_text);
    setAccessibleDescription(toolTip);
    // Otherwise the focus would go on to a box, which takes Ctrl+Z and Ctrl+Y for itself.
    if (!undo && window()->focusWidget() == this) focusPreviousChild();
    setEnabled(undo != nullptr);
    setVisible(undo || redo);
    ElideText();
}

void UndoButton::resizeEvent(QResizeEvent* event) {
    QPushButton::resizeEvent(event);
    ElideText();
}

void UndoButton::ElideText() {
    QStyleOptionButton option;
    initStyleOption(&option);
    const int room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).width();
    QString shown = fontMetrics().elidedText(m_text, Qt::ElideRight, room);
    shown.replace('&', QStringLiteral("&&"));
    if (shown.startsWith('U')) shown.prepend('&');
    if (shown != text()) setText(shown);
}

void UndoButton::Undo() {
    Make(true);
}

void UndoButton::Redo() {
    Make(false);
}

void UndoButton::Make(bool isUndo) {
    if (!m_app->Changes) return;
    History& changes = *m_app->Changes;
    const HistoryOf whose = m_list.Whose();
    const HistoryStep* const step = isUndo ? changes.ToUndo(whose) : changes.ToRedo(whose);
    if (!step) return;
    const std::string name = step->Name; // the step is about to move
    const Result<HistoryRefusal> refusal = [&] {
        const BusyCursor busy; // taking an import of 32,767 materials back takes 0.3 s
        return isUndo ? changes.Undo(whose, *m_app, m_list.IsUsed())
                      : changes.Redo(whose, *m_app, m_list.IsUsed());
    }();
    if (ShowFailure(*m_app, refusal)) return;
    if (!refusal->Reasons.empty())
        ShowError(*m_app,
                  {.Doing = (isUndo ? "undo \"" : "do again \"") + name + '"', .Reason = Joined(*refusal)});
    m_list.Reload(); // after a refusal too: the list may not show yet what another copy has changed
    if (refusal->Reasons.empty() && m_list.Say)
        m_list.Say((isUndo ? QStringLiteral("Undone: ") : QStringLiteral("Done again: ")) + FromUtf8(name));
    ShowStep();
}
} // namespace mact
