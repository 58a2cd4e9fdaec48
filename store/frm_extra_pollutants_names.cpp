#include "store/frm_extra_pollutants_names.h"

#include "base/messages.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "store/additional_names.h"
#include "store/ui_frm_extra_pollutants_names.h"

#include <algorithm>

namespace mact {

frmExtraPollutantsNames::frmExtraPollutantsNames(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmExtraPollutantsNames>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeRoomForLines(*m_ui->lbl_ReadBack, 3); // so that the window stays while a name is typed
    for (QLineEdit* box : Boxes()) {
        AcceptCodePageText(*box);
        connect(box, &QLineEdit::textChanged, this, &frmExtraPollutantsNames::ShowReadBack);
    }
    connect(m_ui->cmd_OK, &QPushButton::clicked, this, &frmExtraPollutantsNames::SaveNames);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);

    LoadAdditionalNames(m_app); // another running copy may have changed them
    const std::vector<std::string_view> names = Split(m_app.AdditionalNames, '|');
    if (names.size() == Boxes().size()) {
        for (std::size_t index = 0; index < names.size(); ++index)
            Boxes()[index]->setText(FromCodePage(names[index]));
    } else if (!m_app.AdditionalNames.empty()) { // the boxes stay empty, for the user to fill
        m_app.AdditionalNames = UnusedNames;
    }
}

frmExtraPollutantsNames::~frmExtraPollutantsNames() = default;

std::array<QLineEdit*, 6> frmExtraPollutantsNames::Boxes() const {
    return {m_ui->txt_pname_0, m_ui->txt_pname_1, m_ui->txt_pname_2,
            m_ui->txt_pname_3, m_ui->txt_pname_4, m_ui->txt_pname_5};
}

void frmExtraPollutantsNames::ShowReadBack() {
    PollutantNames names;
    std::ranges::transform(Boxes(), names.begin(),
                           [](const QLineEdit* box) { return ToCodePage(box->text()); });
    const QString text = FromUtf8(WhatIsReadBack(names));
    if (text == m_ui->lbl_ReadBack->text()) return;
    m_ui->lbl_ReadBack->setText(text);
    m_ui->lbl_ReadBack->setToolTip(text.isEmpty() ? QString() : ToolTipOf(text)); // a long name may be cut
    for (QLineEdit* box : Boxes())
        box->setAccessibleDescription(text); // tells screen readers of the change, too
    if (isVisible()) LimitToTexts(*this);
}

void frmExtraPollutantsNames::SaveNames() {
    PollutantNames names;
    for (std::size_t index = 0; index < names.size(); ++index) {
        names[index] = ToCodePage(Boxes()[index]->text()); // saved with its spaces
        if (Trim(names[index]).empty()) {
            ShowFormErrors(m_app, NameIsEmpty);
            Boxes()[index]->setFocus();
            return;
        }
    }
    if (!ShowFailure(m_app, SaveAdditionalNames(m_app, names))) hide();
}

void ShowAdditionalNames(AppContext& app, QWidget* parent) {
    frmExtraPollutantsNames window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
