#include "transfer/frm_import.h"

#include "base/files.h"
#include "base/messages.h"
#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "transfer/frm_error_log.h"
#include "transfer/ui_frm_import.h"

#include <QLocale>

namespace mact {
namespace {

constexpr std::string_view FileNotFound = "File not found. Please make sure that your have specified "
                                          "the correct path or use browse feature to give "
                                          "accurate path."; // sic

/// Hides the control but keeps its place, so that nothing moves when it appears.
void KeepPlace(QWidget& control) {
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
    control.hide();
}

} // namespace

frmImport::frmImport(AppContext& app, TransferModule module, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmImport>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    for (QLabel* value : {m_ui->lbl_status, m_ui->lbl_Remarks})
        MakeCopyable(*value);
    m_ui->lbl_Module->hide(); // holds the module's number, which Module reads back
    m_ui->lbl_Module->setNum(static_cast<int>(module));
    m_ui->lbl_status->setText(QStringLiteral("Idle"));
    m_ui->cmd_ViewErrors->hide();
    MakeRoomForLines(*m_ui->lbl_status, 3);  // a summary's, or the controls would move
    MakeRoomForLines(*m_ui->lbl_Remarks, 3); // of one remark; a window with both may grow
    m_ui->lbl_Remarks->setMinimumWidth(60 * fontMetrics().averageCharWidth());
    m_ui->lbl_Progress->setMinimumWidth(
        fontMetrics().horizontalAdvance(QStringLiteral("88,888,888 lines"))); // or the bar would jump
    KeepPlace(*m_ui->bar_Progress);
    KeepPlace(*m_ui->lbl_Progress);
    setWindowTitle(module == TransferModule::Materials ? QStringLiteral("Import Material Records")
                                                       : QStringLiteral("Import Usage Records"));
    connect(m_ui->txt_SourceFile, &QLineEdit::textChanged, this, &frmImport::Enable_Button);
    connect(m_ui->cmd_Browse, &QPushButton::clicked, this, &frmImport::Browse);
    connect(m_ui->cmd_Import, &QPushButton::clicked, this, &frmImport::Import);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &frmImport::reject);
    connect(m_ui->cmd_ViewErrors, &QPushButton::clicked, this,
            [this] { ShowErrorLog(m_app, ImportErrorLog(m_app, Module()), this); });
    Enable_Button();
}

frmImport::~frmImport() = default;

TransferModule frmImport::Module() const {
    return m_ui->lbl_Module->text() == QLatin1String("1") ? TransferModule::Materials : TransferModule::Usage;
}

void frmImport::Enable_Button() {
    const bool hasPath = !Trim(m_ui->txt_SourceFile->text().toStdString()).empty();
    m_ui->cmd_Import->setEnabled(hasPath);
    m_ui->cmd_Import->setDefault(hasPath);
}

void frmImport::Browse() {
    const auto chosen = m_app.Dialogs.ChooseFileToOpen(windowTitle().toStdString(), FileKind::Text);
    if (!chosen) return;
    m_ui->txt_SourceFile->setText(FromPath(*chosen));
    m_ui->cmd_Import->setFocus();
}

void frmImport::Import() {
    if (IsWorking()) return; // the window still takes events during an import
    const std::filesystem::path source = TypedPath(m_ui->txt_SourceFile->text().toStdString());
    const Result<bool> isThere = LookForFile(source);
    if (ShowFailure(m_app, isThere)) return;
    if (*isThere)
        RunImport(source);
    else
        ShowFormErrors(m_app, FileNotFound);
}

void frmImport::RunImport(const std::filesystem::path& source) {
    m_progress = std::make_unique<ImportProgress>(
        [this](int lines, int thousandths) { ShowProgress(lines, thousandths); });
    const TransferWatcher watcher = [this](const TransferProgress& progress) {
        return m_progress->Watch(progress);
    };
    ShowWorking(true);
    const auto import = Module() == TransferModule::Materials ? ImportMaterials : ImportUsage;
    const ImportCounts counts = import(m_app, source, watcher);
    m_progress.reset(); // IsWorking until here, so reject does not close the window
    ShowWorking(false);
    m_ui->lbl_status->setText(QString::fromStdString(ImportSummary(counts.Processed, counts.Errors)));
    m_ui->lbl_Remarks->setText(QString::fromStdString(ImportRemarks(counts, Module())));
    m_ui->cmd_ViewErrors->setVisible(counts.Errors != 0);
    LimitToTexts(*this);
}

void frmImport::ShowWorking(bool isWorking) {
    m_ui->txt_SourceFile->setEnabled(!isWorking);
    m_ui->cmd_Browse->setEnabled(!isWorking);
    m_ui->bar_Progress->hide(); // ShowProgress shows both, but only in an import that takes a while
    m_ui->lbl_Progress->hide();
    if (isWorking) {
        m_ui->cmd_Import->setEnabled(false);
        m_ui->cmd_ViewErrors->hide();
        m_ui->lbl_status->setText(QStringLiteral("Importing..."));
        m_ui->lbl_Remarks->clear();
        m_ui->cmd_Cancel->setFocus(); // a stray Enter after the import must not start another
    } else {
        Enable_Button();
    }
}

void frmImport::ShowProgress(int lines, int thousandths) {
    m_ui->bar_Progress->setValue(thousandths);
    m_ui->lbl_Progress->setText(QLocale(QLocale::English).toString(lines) + QStringLiteral(" lines"));
    m_ui->bar_Progress->show();
    m_ui->lbl_Progress->show();
}

void frmImport::reject() {
    // Escape and the close button end up here too. QDialog does not close a window that stays visible.
    if (IsWorking())
        m_progress->Stop();
    else
        QDialog::reject();
}

void ShowMaterialImport(AppContext& app, QWidget* parent) {
    frmImport window(app, TransferModule::Materials, parent);
    ShowModally(app, window);
}

void ShowUsageImport(AppContext& app, QWidget* parent) {
    frmImport window(app, TransferModule::Usage, parent);
    ShowModally(app, window);
}
} // namespace mact
