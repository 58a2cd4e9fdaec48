#include "reports/frm_reports.h"

#include "dialogs/dialog_routines.h"
#include "reports/reports.h"
#include "reports/ui_frm_reports.h"

namespace mact {

frmReports::frmReports(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmReports>()) {
    m_ui->setupUi(this);
    for (const ReportFrame& frame : Frames()) {
        NumberItems(*frame.Month);
        AcceptAnyYear(*frame.Year);
        if (frame.Month != m_ui->cbo_Month) SelectCurrentMonth(frame); // the first starts with all materials
        connect(frame.Generate, &QPushButton::clicked, this, [this, frame] { Generate(frame); });
    }
    connect(m_ui->opt_materials_0, &QRadioButton::clicked, this, [this] { ChooseMaterials(true); });
    connect(m_ui->opt_materials_1, &QRadioButton::clicked, this, [this] { ChooseMaterials(false); });
    ChooseMaterials(true);
}

frmReports::~frmReports() = default;

std::array<frmReports::ReportFrame, 5> frmReports::Frames() const {
    return {
        {
         {m_ui->cbo_Month, m_ui->cbo_Year, m_ui->cmd_Generate, GenerateCompliantMaterialsReport},
         {m_ui->cbo_Month2, m_ui->cbo_Year2, m_ui->cmd_Generate2, GenerateWeightedAverageReport},
         {m_ui->cbo_Month3, m_ui->cbo_Year3, m_ui->cmd_Generate3, GenerateEmissionAverageReport},
         {m_ui->cbo_Month4, m_ui->cbo_Year4, m_ui->cmd_Generate4, GenerateAdditionalHapUsageReport},
         {m_ui->cbo_Month5, m_ui->cbo_Year5, m_ui->cmd_Generate5, GenerateAdditionalHapEmissionReport},
         }
    };
}

void frmReports::SelectCurrentMonth(const ReportFrame& frame) {
    const std::chrono::year_month today = m_app.Calendar.CurrentMonth();
    // The first entries, in case the list lacks the current year: then the last call changes nothing.
    SelectListItem(*frame.Month);
    SelectListItem(*frame.Year);
    SelectListItem(*frame.Month, static_cast<unsigned>(today.month()));
    SelectListItem(*frame.Year, QString::number(static_cast<int>(today.year())), false);
}

void frmReports::ChooseMaterials(bool areAllWanted) {
    const ReportFrame frame = Frames().front(); // only this report can do without a month
    frame.Month->setEnabled(!areAllWanted);
    frame.Year->setEnabled(!areAllWanted);
    if (areAllWanted) {
        frame.Month->setCurrentIndex(-1);
        frame.Year->setCurrentIndex(-1);
        frame.Year->clearEditText();
    } else {
        SelectCurrentMonth(frame);
    }
}

void frmReports::Generate(const ReportFrame& frame) {
    const BusyCursor cursor;
    ReportPeriod period;
    const bool isForAll = frame.Month == m_ui->cbo_Month && m_ui->opt_materials_0->isChecked();
    if (!isForAll) // without a month or year the text is not a period, and the report says so
        period.EndText =
            (frame.Month->currentData().toString() + u'/' + frame.Year->currentText()).toStdString();
    frame.Report(m_app, period); // shows its own failures
}

void ShowReportsForm(AppContext& app, QWidget* parent) {
    frmReports window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
