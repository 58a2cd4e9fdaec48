#pragma once

#include "base/app_context.h"
#include "reports/report_period.h"

#include <QDialog>

#include <array>
#include <memory>

class QComboBox;
class QPushButton;

namespace Ui {
class frmReports;
}

namespace mact {

/// Offers the five reports, each with the last of the twelve months that it covers.
class frmReports : public QDialog {
    Q_OBJECT

public:
    frmReports(AppContext& app, QWidget* parent);
    ~frmReports() override;

private:
    struct ReportFrame {
        QComboBox* Month;
        QComboBox* Year;
        QPushButton* Generate;
        std::int16_t (*Report)(AppContext&, const ReportPeriod&);
    };
    std::array<ReportFrame, 5> Frames() const;
    void SelectCurrentMonth(const ReportFrame& frame);
    void ChooseMaterials(bool areAllWanted);
    void Generate(const ReportFrame& frame);

    AppContext& m_app;
    std::unique_ptr<Ui::frmReports> m_ui;
};

void ShowReportsForm(AppContext& app, QWidget* parent);
} // namespace mact
