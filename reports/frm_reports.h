#pragma once

#include "base/app_context.h"
#include "reports/period_content.h"
#include "reports/report_period.h"

#include <QDialog>

#include <array>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;

namespace Ui {
class frmReports;
}

namespace mact {

/// Offers the five reports, each with the last of the twelve months that it covers. A line beside the month
/// says what those twelve hold; what there is, is counted once, when the window opens.
class frmReports : public QDialog {
    Q_OBJECT

public:
    frmReports(AppContext& app, QWidget* parent);
    ~frmReports() override;

private:
    struct ReportFrame {
        QComboBox* Month;
        QComboBox* Year;
        QLabel* Content;
        QPushButton* Generate;
        std::int16_t (*Report)(AppContext&, const ReportPeriod&);
    };
    std::array<ReportFrame, 5> Frames() const;
    void SelectCurrentMonth(const ReportFrame& frame);
    void SelectNewestMonth();
    bool IsForAllMaterials(const ReportFrame& frame) const;
    /// Says what the chosen months hold.
    void ShowContent(const ReportFrame& frame);
    void PrepareNewestMonth();
    void ChooseMaterials(bool areAllWanted);
    void Generate(const ReportFrame& frame);

    AppContext& m_app;
    std::unique_ptr<Ui::frmReports> m_ui;
    Result<PeriodCounts> m_usage;
    Result<std::size_t> m_materials; ///< how many
};

void ShowReportsForm(AppContext& app, QWidget* parent);
} // namespace mact
