#include "overview/frm_overview.h"

// What leads out of the window: editors, traces, other windows, paper and files.

#include "base/messages.h"
#include "dialogs/dialog_routines.h"
#include "materials/frm_material.h"
#include "overview/frm_half_year.h"
#include "overview/frm_overview_options.h"
#include "overview/frm_trace.h"
#include "overview/month_reports.h"
#include "overview/overview_page.h"
#include "overview/overview_print.h"
#include "overview/ui_frm_overview.h"
#include "reports/report_publishing.h"
#include "store/additional_names.h"
#include "usage/frm_usage.h"

#include <QApplication>
#include <QClipboard>

#include <set>

namespace mact {

void frmOverview::OpenAttention() {
    const int row = m_ui->lst_Attention->currentIndex().row();
    if (row < 0) return;
    if (const AttentionNote* note = m_attention.NoteAt(row)) {
        if (note->Opens == AttentionNote::Place::Options)
            ChangeOptions();
        else if (note->Opens == AttentionNote::Place::Packs)
            ShowPacks();
        return;
    }
    const Attention* finding = m_attention.FindingAt(row);
    if (!finding || (!finding->Use && !finding->Material)) return;
    if (finding->Use) {
        EditUsage(m_app, m_records.Usage[*finding->Use].Record, this);
    } else {
        LoadAdditionalNames(m_app); // the editor shows them
        EditMaterial(m_app, m_records.Materials[*finding->Material].MaterialId, this);
    }
    Load();
}

void frmOverview::Why() {
    const std::optional<OverviewRow> row = SelectedRow();
    const MonthFigures& figures = FiguresOf(m_month);
    const bool isSaved = row ? ShowTraceOfRow(m_app, *m_shop, figures, *row, this)
                             : ShowTrace(m_app, *m_shop, figures, "emissions", {}, this);
    if (isSaved) Load();
}

QString frmOverview::Page() {
    const MonthFigures& figures = FiguresOf(m_month);
    const std::vector<OverviewRow> rows = RowsOf(*m_shop, figures, m_untrusted, m_troubles, m_options);
    std::vector<std::string> notes;
    for (const AttentionNote& note : m_notes)
        notes.push_back(note.Text);
    return FromUtf8(OverviewPage({.CompanyName = m_app.CurrentCompanyName,
                                  .CompanyLocation = m_app.CurrentCompanyLocation,
                                  .Shop = *m_shop,
                                  .Figures = figures,
                                  .Rows = rows,
                                  .Findings = m_attention.Findings(),
                                  .Notes = notes,
                                  .Options = m_options,
                                  .HasChart = true}));
}

void frmOverview::Print() {
    PreviewOverview(m_app, Page(), m_ui->cht_Months->Picture(), this);
}

void frmOverview::SavePdf() {
    const auto path = m_app.Dialogs.ChooseFileToSave("Save the overview as PDF", FileKind::Pdf);
    if (!path) return;
    const BusyCursor cursor;
    static_cast<void>(
        ShowFailure(m_app, WriteOverviewPdf(m_app, *path, Page(), m_ui->cht_Months->Picture())));
}

void frmOverview::MakeReports() {
    const MonthReports reports = [this] {
        const BusyCursor cursor; // not over the boxes
        return WriteMonthReports(m_app, m_month);
    }();
    std::set<std::string> shown; // one cause can fail all five
    for (const Failure& failure : reports.Failures)
        if (shown.insert(SentenceOf(failure)).second) ShowError(m_app, failure);
    if (!reports.Index.empty()) OpenReport(m_app, reports.Index);
}

void frmOverview::ShowPacks() {
    ShowHalfYearPacks(m_app, *m_shop, m_month, this);
    Load(); // a pack may have been made
}

void frmOverview::ChangeOptions() {
    if (EditOverviewOptions(m_app, this)) Load();
}

void frmOverview::CopyTable() {
    QApplication::clipboard()->setText(m_table.Text());
}
} // namespace mact
