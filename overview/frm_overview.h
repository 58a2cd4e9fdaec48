#pragma once

#include "base/app_context.h"
#include "overview/attention_list.h"
#include "overview/half_year.h"
#include "overview/outlook.h"
#include "overview/overview_options.h"
#include "overview/overview_table.h"
#include "overview/shop_figures.h"
#include "overview/untrusted_figures.h"

#include <QDialog>
#include <QTimer>

#include <map>
#include <memory>
#include <vector>

namespace Ui {
class frmOverview;
}

namespace mact {

/// Where the shop stands at a month end: three answers, a chart, the rows worst first, and what needs
/// attention. Reads the data files and changes none, but for the editors that it opens.
class frmOverview : public QDialog {
    Q_OBJECT

public:
    frmOverview(AppContext& app, QWidget* parent);
    ~frmOverview() override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ConnectControls();
    /// Reads the records anew and shows the month again, or the newest with use.
    void Load();
    void ShowMonth(MonthNumber month);
    void ShowAnswers();
    void ShowRows();
    void ShowChart();
    /// `row` stays the current one; -1 = none.
    void ShowAttention(int row);
    void StepMonths(int months);
    void ChooseMonth();
    void OpenAttention();
    void AddNote(std::string text, AttentionNote::Place opens = AttentionNote::Place::Nowhere);
    void OfferSorting();
    void FitColumns();
    void FitToForm();
    void Why();
    /// The overview as HTML for paper.
    QString Page();
    void Print();
    void SavePdf();
    void MakeReports();
    void ShowPacks();
    void ChangeOptions();
    void CopyTable();
    void FoldStatements(bool isFolded);
    /// The files are looked through, and the kept half-year packs compared, after the window is shown, one at
    /// a time.
    void FindKeptPacks();
    void LookFurther();
    void AddFileDamage();
    void CompareNextPack();
    std::optional<MonthNumber> FirstTroubleOfAverage() const;
    std::optional<OverviewRow> SelectedRow() const;
    void SelectRow(const OverviewRow& row);
    const MonthFigures& FiguresOf(MonthNumber month);
    std::vector<const MonthFigures*> FiguresUntil(MonthNumber month, int months);

    AppContext& m_app;
    std::unique_ptr<Ui::frmOverview> m_ui;
    ShopRecords m_records;
    OverviewOptions m_options;
    std::unique_ptr<ShopFigures> m_shop;           ///< of m_records
    std::map<MonthNumber, MonthFigures> m_figures; ///< those calculated so far
    std::vector<AttentionNote> m_notes;
    UntrustedFigures m_untrusted;
    std::vector<FirstTrouble> m_troubles;
    std::vector<HalfYear> m_packs; ///< still to be compared, the last one next
    int m_samePacks = 0;           ///< of those compared
    int m_otherPacks = 0;
    bool m_isDamageKnown = false;
    QTimer m_nextLook{this};
    OverviewTable m_table{this};
    LimitBar m_bar{this};
    AttentionList m_attention{this};
    MonthNumber m_month = 0;
    bool m_isShowing = false; ///< the controls are being filled
    bool m_areRead = true;    ///< the records
};

/// Without a company it says to choose one.
void ShowOverview(AppContext& app, QWidget* parent);
} // namespace mact
