#pragma once

#include "base/app_context.h"
#include "transfer/transfer.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmExport;
}

namespace mact {

/// Exports the materials, or the usage, of the current company.
class frmExport : public QDialog {
    Q_OBJECT

public:
    frmExport(AppContext& app, TransferModule module, QWidget* parent);
    ~frmExport() override;

private:
    TransferModule Module() const; ///< the one whose number lbl_Module holds
    void Enable_Button();
    void Browse();
    void Export();

    AppContext& m_app;
    std::unique_ptr<Ui::frmExport> m_ui;
};

void ShowMaterialExport(AppContext& app, QWidget* parent);
void ShowUsageExport(AppContext& app, QWidget* parent);
} // namespace mact
