#include "transfer/frm_error_log.h"

#include "dialogs/dialog_routines.h"
#include "transfer/dialog_texts.h"
#include "transfer/transfer.h"
#include "transfer/ui_frm_error_log.h"

#include <QDialog>
#include <QFontDatabase>

namespace mact {

void ShowErrorLog(AppContext& app, const std::filesystem::path& log, QWidget* parent) {
    QDialog window(parent);
    Ui::frmErrorLog controls;
    controls.setupUi(&window);
    controls.txt_Errors->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    controls.txt_Errors->setPlainText(FromCodePage(ReadErrorLog(app, log)));
    window.setWindowTitle(QString::fromLatin1(TransferDialogTexts::ErrorLogTitle));
    ShowModally(app, window);
}

} // namespace mact
