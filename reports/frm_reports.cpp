#include "reports/frm_reports.h"

#include "base/failure.h"
#include "base/files.h"
#include "dialogs/copyable_label.h"
#include "dialogs/dialog_routines.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"
#include "reports/ui_frm_reports.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace mact {
namespace {

/// Unlike SelectListItem, this also shows a year that the list lacks, as if it had been typed.
void SelectYear(QComboBox& years, const QString& year) {
    years.setCurrentIndex(-1);
    SelectListItem(years, year, false);
    if (years.currentIndex() < 0) years.setEditText(year);
}

/// The width of its longest text.
int WidthOfContent(const QLabel& content) {
    int widest = 0;
    for (const char* text : {"No usage; the newest is MMM 8888", "No usage has been entered yet.",
                             "No materials have been entered yet.", "Type a year from 1900 to 9999."})
        widest = std::max(widest, content.fontMetrics().horizontalAdvance(QString::fromLatin1(text)));
    return widest + content.fontMetrics().averageCharWidth();
}

} // namespace

frmReports::frmReports(AppContext& app, QWidget* parent)
    : QDialog(parent), m_app(app), m_ui(std::make_unique<Ui::frmReports>()), m_usage(ReadPeriodCounts(app)),
      m_materials(CountMaterials(app)) {
    m_ui->setupUi(this);
    ShowCompany(*m_ui->lbl_Company, app);
    MakeCopyable(*m_ui->lbl_LastReport);
    for (const ReportFrame& frame : Frames()) {
        NumberItems(*frame.Month);
        AcceptAnyYear(*frame.Year);
        if (frame.Month != m_ui->cbo_Month) SelectCurrentMonth(frame); // the first starts with all materials
        connect(frame.Month, &QComboBox::currentIndexChanged, this, [this, frame] { ShowContent(frame); });
        connect(frame.Year, &QComboBox::currentTextChanged, this, [this, frame] { ShowContent(frame); });
        ShowContent(frame);
        for (QObject* field : FieldsOf(frame))
            field->installEventFilter(this);
        connect(frame.Generate, &QPushButton::clicked, this, [this, frame] { Generate(frame); });
    }
    connect(m_ui->opt_materials_0, &QRadioButton::clicked, this, [this] { ChooseMaterials(true); });
    connect(m_ui->opt_materials_1, &QRadioButton::clicked, this, [this] { ChooseMaterials(false); });
    ChooseMaterials(true);
    OpenWideEnough();
    PrepareNewestMonth();
    OfferLastReport(NewestReport(app.ProgramFolder));
    connect(m_ui->cmd_LastReport, &QPushButton::clicked, this, &frmReports::OpenLastReport);
    connect(m_ui->cmd_Close, &QPushButton::clicked, this, &QDialog::reject);
}

frmReports::~frmReports() = default;

std::array<frmReports::ReportFrame, 5> frmReports::Frames() const {
    return {
        {
         {m_ui->cbo_Month, m_ui->cbo_Year, m_ui->lbl_Content, m_ui->cmd_Generate,
             GenerateCompliantMaterialsReport, CompliantMaterialsFile},
         {m_ui->cbo_Month2, m_ui->cbo_Year2, m_ui->lbl_Content2, m_ui->cmd_Generate2,
             GenerateWeightedAverageReport, WeightedAverageFile},
         {m_ui->cbo_Month3, m_ui->cbo_Year3, m_ui->lbl_Content3, m_ui->cmd_Generate3,
             GenerateEmissionAverageReport, EmissionAverageFile},
         {m_ui->cbo_Month4, m_ui->cbo_Year4, m_ui->lbl_Content4, m_ui->cmd_Generate4,
             GenerateAdditionalHapUsageReport, AdditionalHapUsageFile},
         {m_ui->cbo_Month5, m_ui->cbo_Year5, m_ui->lbl_Content5, m_ui->cmd_Generate5,
             GenerateAdditionalHapEmissionReport, AdditionalHapEmissionFile},
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

void frmReports::SelectNewestMonth() {
    const std::chrono::year_month newest = *m_usage->Newest(); // or the button would be disabled
    m_ui->opt_materials_1->setChecked(true);
    ChooseMaterials(false);
    for (const ReportFrame& frame : Frames()) {
        SelectListItem(*frame.Month, unsigned{newest.month()});
        SelectYear(*frame.Year, QString::number(int{newest.year()}));
    }
}

/// With room for what the frames may say. The window can be made narrower than that, where a screen is small.
void frmReports::OpenWideEnough() {
    for (const ReportFrame& frame : Frames())
        frame.Content->setMinimumWidth(WidthOfContent(*frame.Content));
    resize(size().expandedTo(minimumSizeHint()));
    for (const ReportFrame& frame : Frames())
        frame.Content->setMinimumWidth(0);
}

void frmReports::PrepareNewestMonth() {
    const bool hasNewest = m_usage && m_usage->Newest();
    m_ui->cmd_NewestMonth->setEnabled(hasNewest);
    m_ui->cmd_NewestMonth->setToolTip(hasNewest ? QStringLiteral("Sets all five reports to ") +
                                                      FromUtf8(ShortMonthName(*m_usage->Newest()))
                                                : QStringLiteral("No month has usage"));
    connect(m_ui->cmd_NewestMonth, &QPushButton::clicked, this, &frmReports::SelectNewestMonth);
}

bool frmReports::IsForAllMaterials(const ReportFrame& frame) const {
    return frame.Month == m_ui->cbo_Month && m_ui->opt_materials_0->isChecked();
}

void frmReports::ShowContent(const ReportFrame& frame) {
    const std::string content =
        IsForAllMaterials(frame)
            ? MaterialsContent(m_materials)
            : PeriodContent(m_usage, SelectedData(*frame.Month), frame.Year->currentText().toStdString());
    frame.Content->setText(FromUtf8(content));
    // So that a screen reader says it with the field, and when it changes.
    for (QWidget* control : std::initializer_list<QWidget*>{frame.Month, frame.Year, frame.Generate})
        control->setAccessibleDescription(frame.Content->text());
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
    ShowContent(frame); // even if the month was none before
}

void frmReports::Generate(const ReportFrame& frame) {
    const BusyCursor cursor;
    ReportPeriod period;
    if (!IsForAllMaterials(frame)) // without a month or year the text is not a period, and the report says so
        period.EndText =
            (frame.Month->currentData().toString() + u'/' + frame.Year->currentText()).toStdString();
    const std::int16_t outcome = frame.Report(m_app, period); // shows its own failures
    if (outcome == ReportPublished) OfferLastReport(m_app.ProgramFolder / frame.File);
}

std::array<QObject*, 3> frmReports::FieldsOf(const ReportFrame& frame) {
    return {frame.Month, frame.Year, frame.Year->lineEdit()};
}

bool frmReports::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter)
        return QDialog::eventFilter(watched, event);
    for (const ReportFrame& frame : Frames())
        if (std::ranges::count(FieldsOf(frame), watched) > 0 && !key->isAutoRepeat()) frame.Generate->click();
    return true;
}

void frmReports::OfferLastReport(std::optional<std::filesystem::path> report) {
    m_lastReport = std::move(report);
    m_ui->cmd_LastReport->setEnabled(m_lastReport.has_value());
    m_ui->cmd_LastReport->setToolTip(m_lastReport ? QString() : QStringLiteral("No report has been made"));
    m_ui->lbl_LastReport->setText(m_lastReport ? QStringLiteral("Last report: ") + FromPath(*m_lastReport)
                                               : QString());
}

void frmReports::OpenLastReport() {
    const std::filesystem::path report = *m_lastReport; // or the button would be disabled
    if (!IsFileAt(report)) {
        OfferLastReport(NewestReport(m_app.ProgramFolder));
        m_ui->lbl_LastReport->setText(QStringLiteral("This report is no longer there: ") + FromPath(report));
        return;
    }
    const Result<bool> isOpened = OpenInBrowser(m_app, report);
    if (!isOpened)
        m_ui->lbl_LastReport->setText(FromUtf8(SentenceOf(isOpened.error())));
    else if (!*isOpened)
        m_ui->lbl_LastReport->setText(QStringLiteral("No browser is configured. The report is ") +
                                      FromPath(report));
}

void ShowReportsForm(AppContext& app, QWidget* parent) {
    frmReports window(app, parent);
    ShowModally(app, window);
}
} // namespace mact
