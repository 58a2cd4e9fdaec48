#include "transfer/frm_error_log.h"

#include "base/messages.h"
#include "dialogs/dialog_routines.h"
#include "transfer/transfer.h"
#include "transfer/ui_frm_error_log.h"

#include <QDialog>
#include <QFontDatabase>

namespace mact {

void ShowErrorLog(AppContext& app, const std::filesystem::path& log, QWidget* parent) {
    QDialog window(parent);
    Ui::frmErrorLog controls;
    controls.setupUi(&window);
    ShowCompany(*controls.lbl_Company, app);
    controls.txt_Errors->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const Result<std::string> text = ReadErrorLog(app.Files, log);
    if (text)
        controls.txt_Errors->setPlainText(FromCodePage(*text));
    else
        ShowError(app, text.error()); // the window opens all the same, empty
    // One title for all three logs, on purpose.
    window.setWindowTitle(QStringLiteral("Material Import - Error Log"));
    QObject::connect(controls.cmd_Close, &QPushButton::clicked, &window, &QDialog::reject);
    ShowModally(app, window);
}
} // namespace mact
