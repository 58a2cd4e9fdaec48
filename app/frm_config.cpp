#include "app/frm_config.h"

#include "app/configuration.h"
#include "app/frm_restore.h"
#include "app/ui_frm_config.h"
#include "base/messages.h"
#include "base/settings.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "store/frm_extra_pollutants_names.h"

#include <algorithm>

namespace mact {
namespace {

QString ShownPath(const std::string& utf8Path) {
    return FromPath(PathFromUtf8(utf8Path));
}

/// The path as typed: blanks around it stay, so that saving can trim them.
std::string PathIn(const QLineEdit& edit) {
    return PathText(ToPath(edit.text()));
}

const QString NoSuchFile = QStringLiteral("There is no such file: the browser stays as it is.");

QString BrowserHint(const std::string& browser, bool usesSystemBrowser) {
    if (!IsBrowserToBeSaved(browser)) return NoSuchFile;
    if (!Trim(browser).empty()) return QStringLiteral("Reports open in this program.");
    return usesSystemBrowser ? QStringLiteral("Reports open in the system's browser.")
                             : QStringLiteral("Reports are saved, but not opened.");
}

} // namespace

frmConfig::frmConfig(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmConfig>()) {
    m_ui->setupUi(this);
    const Configuration configuration = ReadConfiguration(app);
    m_unread = configuration.Unread;
    m_ui->dir_backup->setText(ShownPath(configuration.BackupFolder));
    m_ui->chk_auto->setChecked(configuration.IsBackedUpOnExit);
    m_ui->txt_browser->setText(ShownPath(configuration.Browser));
    m_ui->chk_SystemBrowser->setChecked(configuration.UsesSystemBrowser);
    m_ui->cbo_Colours->setItemData(1, FromUtf8(Settings::Light));
    m_ui->cbo_Colours->setItemData(2, FromUtf8(Settings::Dark));
    // The first entry has no data, and is what the empty text means.
    m_ui->cbo_Colours->setCurrentIndex(
        std::max(m_ui->cbo_Colours->findData(FromUtf8(configuration.WindowColours)), 0));
    // The longest hint has room from the beginning, or the window would grow while something is typed.
    m_ui->lbl_BrowserHint->setText(NoSuchFile);
    m_ui->lbl_BrowserHint->setMinimumWidth(m_ui->lbl_BrowserHint->sizeHint().width());
    ShowBrowserHint();
    m_ui->dir_backup->setFocus();
    ShowWhetherThereIsACompany();

    connect(m_ui->cmd_Folder, &QPushButton::clicked, this, &frmConfig::ChooseFolder);
    connect(m_ui->txt_browser, &QLineEdit::textChanged, this, &frmConfig::ShowBrowserHint);
    connect(m_ui->chk_SystemBrowser, &QCheckBox::toggled, this, &frmConfig::ShowBrowserHint);
    connect(m_ui->cmd_Browse, &QPushButton::clicked, this, &frmConfig::ChooseBrowser);
    connect(m_ui->cmd_ExtraPollutants, &QPushButton::clicked, this,
            [this] { ShowAdditionalNames(m_app, this); });
    connect(m_ui->cmd_Restore, &QPushButton::clicked, this, [this] {
        ShowRestore(m_app, this);
        ShowWhetherThereIsACompany();
    });
    connect(m_ui->cmd_Save, &QPushButton::clicked, this, &frmConfig::SaveSettings);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmConfig::~frmConfig() = default;

void frmConfig::ShowWhetherThereIsACompany() {
    const bool isThere = m_app.CurrentCompanyId != 0;
    m_ui->cmd_ExtraPollutants->setEnabled(isThere);
    m_ui->cmd_ExtraPollutants->setToolTip(
        isThere ? QString() : QStringLiteral("Choose a company first: the names are kept for each company."));
}

void frmConfig::ShowBrowserHint() {
    const QString hint = BrowserHint(PathIn(*m_ui->txt_browser), m_ui->chk_SystemBrowser->isChecked());
    m_ui->lbl_BrowserHint->setText(hint);
    m_ui->txt_browser->setAccessibleDescription(hint);
}

void frmConfig::ChooseFolder() {
    const auto folder =
        m_app.Dialogs.ChooseFolder("Choose the backup folder", ToPath(m_ui->dir_backup->text()));
    if (folder) m_ui->dir_backup->setText(FromPath(*folder));
}

void frmConfig::ChooseBrowser() {
    const auto browser = m_app.Dialogs.ChooseFileToOpen("Choose the browser", FileKind::Program);
    if (browser) m_ui->txt_browser->setText(FromPath(*browser));
}

void frmConfig::SaveSettings() {
    const std::vector<Failure> failures = SaveConfiguration(
        m_app.Settings, {.BackupFolder = PathIn(*m_ui->dir_backup),
                         .IsBackedUpOnExit = m_ui->chk_auto->isChecked(),
                         .Browser = PathIn(*m_ui->txt_browser),
                         .UsesSystemBrowser = m_ui->chk_SystemBrowser->isChecked(),
                         .WindowColours = m_ui->cbo_Colours->currentData().toString().toStdString()});
    if (m_app.Colours) m_app.Colours->FollowSetting();
    for (auto failure = failures.begin(); failure != failures.end(); ++failure) {
        // A file that cannot be written is told once, not for each setting in it.
        const auto isSameFault = [&](const Failure& earlier) {
            return !earlier.Path.empty() && earlier.Path == failure->Path &&
                   earlier.Reason == failure->Reason;
        };
        if (std::none_of(failures.begin(), failure, isSameFault)) ShowError(m_app, *failure);
    }
    if (failures.empty()) hide();
}

void ShowConfiguration(AppContext& app, QWidget* parent) {
    frmConfig window(app, parent);
    // A save would put what is shown in the place of what could not be read.
    if (window.Unread())
        ShowError(app, *window.Unread());
    else
        ShowModally(app, window);
}
} // namespace mact
