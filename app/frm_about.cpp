#include "app/frm_about.h"

#include "app/ui_frm_about.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "dialogs/pictures.h"
#include "store/data_folder.h"

#include <QDialog>
#include <QFontInfo>
#include <QLabel>

namespace mact {
namespace {

/// Makes a heading of the label, relative to the user's font size.
void Enlarge(QLabel& label) {
    constexpr double factor = 1.6;
    QFont font = label.font();
    font.setPointSizeF(QFontInfo(font).pointSizeF() * factor);
    label.setFont(font);
}

} // namespace

void ShowAbout(AppContext& app, QWidget* parent) {
    QDialog window(parent);
    Ui::frmAbout controls;
    controls.setupUi(&window);
    controls.pic_About->setPixmap(EmblemIcon().pixmap(QSize(72, 72), window.devicePixelRatio()));
    Enlarge(*controls.lbl_Version);
    controls.lbl_DataFolder->setText(QStringLiteral("Data: ") + FromPath(DataFolder(app)));
    controls.lbl_DataFolder->setMaximumWidth(60 * window.fontMetrics().averageCharWidth());
    MakeCopyable(*controls.lbl_Version);
    MakeCopyable(*controls.lbl_DataFolder);
    window.layout()->setSizeConstraint(QLayout::SetFixedSize);
    QObject::connect(controls.cmd_OK, &QPushButton::clicked, &window, &QDialog::accept);
    ShowModally(app, window);
}
} // namespace mact
