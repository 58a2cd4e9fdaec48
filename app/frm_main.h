#pragma once

#include "base/app_context.h"
#include "overview/verdict.h"

#include <QTimer>
#include <QWidget>

#include <memory>

namespace Ui {
class frmMain;
}

namespace mact {

/// The main window, which opens all others. The process lives as long as it is open.
class frmMain : public QWidget {
    Q_OBJECT

public:
    explicit frmMain(AppContext& app);
    ~frmMain() override;
    /// Warns of a backup that turned out incomplete, in lbl_Backup. Happens by itself once the window is
    /// painted, and again later while the backup's copy may be running.
    void LookAtBackup();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void ConnectButtons();
    void SetIcons();
    void MakeRoomForVerdict();
    void ShowCurrentCompany();
    /// Calculates the verdict in steps once the window is painted, if it may have changed.
    void BeginVerdict();
    void StepVerdict();
    void ShowVerdict();
    /// Starts the automatic backup, whose copy goes on by itself, and ends the process at once: no window is
    /// asked whether it may close.
    void Exit();

    AppContext& m_app;
    std::unique_ptr<Ui::frmMain> m_ui;
    QTimer m_nextLook{this};    ///< at the last backup
    QTimer m_nextVerdict{this}; ///< the next step of the verdict
    VerdictReader m_verdict;
    bool m_isPainted = false;
};
} // namespace mact
