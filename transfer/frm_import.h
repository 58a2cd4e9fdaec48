#pragma once

#include "base/app_context.h"
#include "transfer/import_progress.h"
#include "transfer/transfer.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmImport;
}

namespace mact {

/// Imports a file of materials or usage. During an import, Cancel, Escape and the window's close button stop
/// it after the current line: what has been stored stays, and so does the window.
class frmImport : public QDialog {
    Q_OBJECT

public:
    frmImport(AppContext& app, TransferModule module, QWidget* parent);
    ~frmImport() override;

    void reject() override;

private:
    TransferModule Module() const; ///< the one whose number lbl_Module holds
    bool IsWorking() const { return m_progress != nullptr; }
    void Enable_Button();
    void Browse();
    void Import();
    void RunImport(const std::filesystem::path& source);
    void ShowWorking(bool isWorking);
    void ShowProgress(int lines, int thousandths);

    AppContext& m_app;
    std::unique_ptr<Ui::frmImport> m_ui;
    std::unique_ptr<ImportProgress> m_progress; ///< null unless an import is running
};

void ShowMaterialImport(AppContext& app, QWidget* parent);
void ShowUsageImport(AppContext& app, QWidget* parent);
} // namespace mact
