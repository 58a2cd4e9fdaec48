#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmConfig;
}

namespace mact {

/// The backup folder, the backup on exit and the browser for the reports; also opens the pollutants' names.
class frmConfig : public QDialog {
    Q_OBJECT

public:
    frmConfig(AppContext& app, QWidget* parent);
    ~frmConfig() override;

private:
    void ChooseFolder();
    void ChooseBrowser();
    /// The window stays open if something could not be saved.
    void SaveSettings();

    AppContext& m_app;
    std::unique_ptr<Ui::frmConfig> m_ui;
};

/// `app.AdditionalNames` must already be loaded from the current company's file.
void ShowConfiguration(AppContext& app, QWidget* parent);
} // namespace mact
