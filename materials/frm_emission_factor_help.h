#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frm_EmissionFactorHelp;
}

namespace mact {

/// Says where an alternate emission factor may come from.
class frm_EmissionFactorHelp : public QDialog {
    Q_OBJECT

public:
    explicit frm_EmissionFactorHelp(QWidget* parent);
    ~frm_EmissionFactorHelp() override;

private:
    std::unique_ptr<Ui::frm_EmissionFactorHelp> m_ui;
};

void ShowEmissionFactorHelp(AppContext& app, QWidget* parent);
} // namespace mact
