#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmConfig;
}

namespace mact {

/// The backup folder, the backup on exit, the browser for the reports; the way to the pollutants' names.
class frmConfig : public QDialog {
    Q_OBJECT

public:
    frmConfig(AppContext& app, QWidget* parent);
    ~frmConfig() override;

private:
    void ChooseFolder();
    void ChooseBrowser();
    /// Stays open when something could not be saved.
    void SaveSettings();

    AppContext& m_app;
    std::unique_ptr<Ui::frmConfig> m_ui;
};

/// The additional names in the context are those of the current company's file.
void ShowConfiguration(AppContext& app, QWidget* parent);
} // namespace mact
