#pragma once

#include "base/app_context.h"
#include "overview/overview_csv.h"
#include "overview/overview_rows.h"
#include "overview/trace.h"

#include <QDialog>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class QModelIndex;

namespace Ui {
class frmTrace;
}

namespace mact {

class TraceModel;

/// What a figure of a month end was calculated from, as a tree that can be copied and from which the editors
/// of its records open. It closes once a record is saved, since its figures are then those of before.
class frmTrace : public QDialog {
    Q_OBJECT

public:
    /// `lines` are LinesOf the other two; `place` is that of the figure to show first.
    frmTrace(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
             std::vector<FigureLine> lines, std::size_t place, QWidget* parent);
    ~frmTrace() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ListFigures();
    void ShowFigure();
    void EnableButtons();
    void CloseAllBelow(const QModelIndex& line);
    /// Of the current line, or opens and closes that.
    void OpenRecordOrUnfold(const QModelIndex& line);
    void OpenRecord();

    AppContext& m_app;
    const ShopFigures& m_shop;
    const MonthFigures& m_figures;
    const std::vector<FigureLine> m_lines;
    const std::vector<std::size_t> m_findings; ///< of each line
    std::unique_ptr<Ui::frmTrace> m_ui;
    TraceModel* m_model; ///< the window's
};

/// `figures` are the shop's; `figure` and `item` are those to show first, as TraceFigure takes them. True if
/// a record was saved in an editor. A figure that there is not is shown as an error.
bool ShowTrace(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
               const std::string& figure, const std::string& item, QWidget* parent);
/// The same for a row of the table. Several materials may have a Material ID in common: a filled resin is
/// found by its place.
bool ShowTraceOfRow(AppContext& app, const ShopFigures& shop, const MonthFigures& figures,
                    const OverviewRow& row, QWidget* parent);
} // namespace mact
