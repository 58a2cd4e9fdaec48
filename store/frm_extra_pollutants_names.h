#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <array>
#include <memory>

class QLineEdit;

namespace Ui {
class frmExtraPollutantsNames;
}

namespace mact {

/// The names of the six additional pollutants of the current company.
class frmExtraPollutantsNames : public QDialog {
    Q_OBJECT

public:
    frmExtraPollutantsNames(AppContext& app, QWidget* parent);
    ~frmExtraPollutantsNames() override;

private:
    std::array<QLineEdit*, 6> Boxes() const;
    /// Says what becomes of the names once saved, if that is not what was typed. It stops no save.
    void ShowReadBack();
    void SaveNames();

    AppContext& m_app;
    std::unique_ptr<Ui::frmExtraPollutantsNames> m_ui;
};

/// Saved names take effect with the next LoadAdditionalNames.
void ShowAdditionalNames(AppContext& app, QWidget* parent);
} // namespace mact
