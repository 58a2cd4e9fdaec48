#include "transfer/frm_export.h"

#include "base/text.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "transfer/frm_error_log.h"
#include "transfer/ui_frm_export.h"

namespace mact {

frmExport::frmExport(AppContext& app, TransferModule module, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmExport>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeCopyable(*m_ui->lbl_status);
    m_ui->lbl_Module->hide(); // holds the module's number, which Module reads back
    m_ui->lbl_Module->setNum(static_cast<int>(module));
    m_ui->lbl_status->setText(QStringLiteral("Idle"));
    MakeRoomForLines(*m_ui->lbl_status, 3); // a summary's, or the controls would move
    m_ui->cmd_ViewErrors->hide();
    setWindowTitle(module == TransferModule::Materials ? QStringLiteral("Export Material Records")
                                                       : QStringLiteral("Export Usage Records"));
    connect(m_ui->txt_SourceFile, &QLineEdit::textChanged, this, &frmExport::Enable_Button);
    connect(m_ui->cmd_Browse, &QPushButton::clicked, this, &frmExport::Browse);
    connect(m_ui->cmd_Export, &QPushButton::clicked, this, &frmExport::Export);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->cmd_ViewErrors, &QPushButton::clicked, this,
            [this] { ShowErrorLog(m_app, UsageExportErrorLog(m_app), this); });
    Enable_Button();
}

frmExport::~frmExport() = default;

TransferModule frmExport::Module() const {
    return m_ui->lbl_Module->text() == QLatin1String("1") ? TransferModule::Materials : TransferModule::Usage;
}

void frmExport::Enable_Button() {
    const bool hasPath = !Trim(m_ui->txt_SourceFile->text().toStdString()).empty();
    m_ui->cmd_Export->setEnabled(hasPath);
    m_ui->cmd_Export->setDefault(hasPath);
}

void frmExport::Browse() {
    const auto chosen = m_app.Dialogs.ChooseFileToSave(windowTitle().toStdString());
    if (!chosen) return;
    m_ui->txt_SourceFile->setText(FromPath(*chosen));
    m_ui->cmd_Export->setFocus();
}

void frmExport::Export() {
    const BusyCursor cursor;
    const std::filesystem::path target = TypedPath(m_ui->txt_SourceFile->text().toStdString());
    int processedCount = 0;
    // A material export leaves it empty: it writes no log, so there is none to view.
    std::optional<int> errorCount;
    if (Module() == TransferModule::Materials)
        ExportMaterialFile(m_app, target, processedCount, errorCount);
    else
        ExportUsageFile(m_app, target, processedCount, errorCount);
    m_ui->cmd_ViewErrors->setVisible(errorCount.value_or(0) != 0);
    m_ui->lbl_status->setText(QString::fromStdString(ExportSummary(processedCount, errorCount)));
}

void ShowMaterialExport(AppContext& app, QWidget* parent) {
    frmExport window(app, TransferModule::Materials, parent);
    ShowModally(app, window);
}

void ShowUsageExport(AppContext& app, QWidget* parent) {
    frmExport window(app, TransferModule::Usage, parent);
    ShowModally(app, window);
}
} // namespace mact
