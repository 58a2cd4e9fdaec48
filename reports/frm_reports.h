#pragma once

#include "base/app_context.h"
#include "reports/period_content.h"
#include "reports/report_period.h"

#include <QDialog>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;

namespace Ui {
class frmReports;
}

namespace mact {

/// Offers the five reports, each with the last of the twelve months that it covers. A line beside the month
/// says what those twelve hold; what there is, is counted once, when the window opens. Enter in a month or
/// year generates its report.
class frmReports : public QDialog {
    Q_OBJECT

public:
    frmReports(AppContext& app, QWidget* parent);
    ~frmReports() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct ReportFrame {
        QComboBox* Month;
        QComboBox* Year;
        QLabel* Content;
        QPushButton* Generate;
        std::int16_t (*Report)(AppContext&, const ReportPeriod&);
        const char* File; ///< in the program folder
    };
    std::array<ReportFrame, 5> Frames() const;
    /// Those that take keys.
    static std::array<QObject*, 3> FieldsOf(const ReportFrame& frame);
    void SelectCurrentMonth(const ReportFrame& frame);
    void SelectNewestMonth();
    bool IsForAllMaterials(const ReportFrame& frame) const;
    /// Says what the chosen months hold.
    void ShowContent(const ReportFrame& frame);
    void OpenWideEnough();
    void PrepareNewestMonth();
    void ChooseMaterials(bool areAllWanted);
    void Generate(const ReportFrame& frame);
    /// The one that "Show last report" opens, and where it is.
    void OfferLastReport(std::optional<std::filesystem::path> report);
    void OpenLastReport();

    AppContext& m_app;
    std::unique_ptr<Ui::frmReports> m_ui;
    Result<PeriodCounts> m_usage;
    Result<std::size_t> m_materials;                   ///< how many
    std::optional<std::filesystem::path> m_lastReport; ///< the newest one, whoever made it; empty = none
};

void ShowReportsForm(AppContext& app, QWidget* parent);
} // namespace mact
