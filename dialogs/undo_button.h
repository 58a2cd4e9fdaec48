#pragma once

#include "base/app_context.h"

#include <QPushButton>

#include <functional>

namespace mact {

/// The button of a list that says what was done last, and takes it back. It is hidden while nothing was done.
/// Its window also has Ctrl+Z, which does the same, and Ctrl+Y, which does again what was taken back.
class UndoButton : public QPushButton {
    Q_OBJECT

public:
    explicit UndoButton(QWidget* parent = nullptr);

    /// What the button needs of its list. `IsUsed` makes what an undo asks before a record goes; `Say` may be
    /// left out.
    struct List {
        std::function<HistoryOf()> Whose{};
        std::function<RecordIsUsed()> IsUsed{};
        std::function<void()> Reload{};
        std::function<void(const QString&)> Say{}; ///< what was taken back or done again
    };
    /// To be called once. Without a history the button stays hidden.
    void Bind(AppContext& app, List list);
    /// To be called when something may have been done.
    void ShowStep();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Undo();
    void Redo();
    void Make(bool isUndo);
    void ElideText();

    AppContext* m_app = nullptr;
    List m_list{};
    QString m_text{}; ///< without "&", not shortened
};
} // namespace mact
