#include "materials/frm_other_pollutants.h"

#include "base/numbers.h"
#include "base/text.h"
#include "dialogs/dialog_routines.h"
#include "materials/ui_frm_other_pollutants.h"
#include "store/additional_names.h"

namespace mact {

frmOtherPollutants::frmOtherPollutants(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmOtherPollutants>()) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    m_rows = {
        {{m_ui->lbl_number_0, m_ui->lbl_poll_0, m_ui->txt_pollcontent_0, m_ui->txt_pollEFactor_0},
         {m_ui->lbl_number_1, m_ui->lbl_poll_1, m_ui->txt_pollcontent_1, m_ui->txt_pollEFactor_1},
         {m_ui->lbl_number_2, m_ui->lbl_poll_2, m_ui->txt_pollcontent_2, m_ui->txt_pollEFactor_2},
         {m_ui->lbl_number_3, m_ui->lbl_poll_3, m_ui->txt_pollcontent_3, m_ui->txt_pollEFactor_3},
         {m_ui->lbl_number_4, m_ui->lbl_poll_4, m_ui->txt_pollcontent_4, m_ui->txt_pollEFactor_4},
         {m_ui->lbl_number_5, m_ui->lbl_poll_5, m_ui->txt_pollcontent_5, m_ui->txt_pollEFactor_5}}
    };
    for (const Row& row : m_rows)
        for (QLineEdit* box : {row.Content, row.Factor}) {
            AcceptCodePageText(*box);
            ShowDisabledInWindowColour(*box);
        }
    connect(m_ui->cmd_OK, &QPushButton::clicked, this, &frmOtherPollutants::CloseIfValid);
    connect(m_ui->cmd_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmOtherPollutants::~frmOtherPollutants() = default;

bool frmOtherPollutants::SetNames(std::string_view names) {
    const std::vector<std::string_view> pieces = Split(names, '|');
    if (pieces.size() != m_rows.size()) return false;
    for (std::size_t index = 0; index < pieces.size(); ++index) {
        const Row& row = m_rows[index];
        const QString name = FromCodePage(pieces[index]);
        // The number takes over the accelerator. Without a buddy, an "&" in the name is shown as such.
        row.Number->setText(u'&' + QString::number(index + 1));
        row.Name->setBuddy(nullptr);
        row.Name->setText(name);
        row.Content->setAccessibleName(QStringLiteral("Content of ") + name);
        row.Factor->setAccessibleName(QStringLiteral("Emission factor of ") + name);
        for (QLineEdit* box : {row.Content, row.Factor})
            box->setEnabled(IsUsedName(pieces[index]));
    }
    return true;
}

void frmOtherPollutants::SetValues(const MaterialRecord& material) {
    SixPollutants values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        // Of unused rows too: they are saved again as they were.
        values[index].Content = NumberText(material.*PollutantContents[index]);
        values[index].Factor = NumberText(material.*PollutantFactors[index]);
    }
    ShowValues(values);
}

SixPollutants frmOtherPollutants::Values() const {
    SixPollutants values;
    for (std::size_t index = 0; index < values.size(); ++index)
        values[index] = {.Content = ToCodePage(m_rows[index].Content->text()),
                         .Factor = ToCodePage(m_rows[index].Factor->text()),
                         .IsUsed = m_rows[index].Content->isEnabled()}; // as SetNames left it
    return values;
}

void frmOtherPollutants::ShowValues(const SixPollutants& values) {
    for (std::size_t index = 0; index < values.size(); ++index) {
        m_rows[index].Content->setText(FromCodePage(values[index].Content));
        m_rows[index].Factor->setText(FromCodePage(values[index].Factor));
    }
}

bool frmOtherPollutants::Validate_Form() {
    const FormErrors errors = CheckPollutants(Values());
    if (errors.IsEmpty()) return true;
    ShowFormErrors(m_app, errors.Text());
    FocusFirstFault();
    return false;
}

// Judges as CheckPollutants does: unused rows do not count.
void frmOtherPollutants::FocusFirstFault() {
    for (const Row& row : m_rows)
        for (QLineEdit* box : {row.Content, row.Factor})
            if (box->isEnabled() && !IsNumeric(ToCodePage(box->text()))) {
                box->setFocus();
                box->selectAll();
                return;
            }
}

void frmOtherPollutants::CloseIfValid() {
    if (Validate_Form()) hide(); // not reject, which restores the old values
}

int frmOtherPollutants::exec() {
    m_valuesBefore = Values(); // what reject restores
    // Otherwise the focus would stay where it was when the window last closed.
    for (const Row& row : m_rows)
        if (row.Content->isEnabled()) {
            row.Content->setFocus();
            row.Content->selectAll();
            break;
        }
    return QDialog::exec();
}

void frmOtherPollutants::reject() {
    // Cancel, Escape and closing the window all lead here.
    ShowValues(m_valuesBefore);
    QDialog::reject();
}
} // namespace mact
