#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class frmConfig;
}

namespace mact {

/// The backup folder, the backup on exit, the browser for the reports and the windows' colours; also opens
/// the pollutants' names and the restore of a backup set.
class frmConfig : public QDialog {
    Q_OBJECT

public:
    frmConfig(AppContext& app, QWidget* parent);
    ~frmConfig() override;

    /// Why the settings could not be read; the window must then not be shown.
    const std::optional<Failure>& Unread() const { return m_unread; }

private:
    /// Only a company has pollutants' names; a restore can take it away.
    void ShowWhetherThereIsACompany();
    /// Says in words what the browser's box leads to.
    void ShowBrowserHint();
    void ChooseFolder();
    void ChooseBrowser();
    /// The window stays open if something could not be saved.
    void SaveSettings();

    AppContext& m_app;
    std::unique_ptr<Ui::frmConfig> m_ui;
    std::optional<Failure> m_unread;
};

/// `app.AdditionalNames` must already be loaded from the current company's file.
void ShowConfiguration(AppContext& app, QWidget* parent);
} // namespace mact
