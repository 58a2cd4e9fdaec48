#pragma once

#include "base/app_context.h"
#include "lists/month_sheet_table.h"
#include "overview/sheet_outlook.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui {
class frmMonthSheet;
}

namespace mact {

/// Enters a month's usage on one sheet. Nothing is stored until it is saved, all of it or none.
class frmMonthSheet : public QDialog {
    Q_OBJECT

public:
    /// `records` have materials.
    frmMonthSheet(AppContext& app, SheetRecords records, QWidget* parent);
    ~frmMonthSheet() override;

    bool HasSaved() const { return m_hasSaved; }
    /// Asks first if anything was typed.
    void reject() override;

private:
    const MonthSheet& Sheet() const { return m_table.Sheet(); }
    QString MonthInWords() const;
    void PrepareTable();
    void ConnectControls();
    void CompleteIds();
    /// Shows the month of the sheet.
    void ShowMonth();
    /// Changes to the month that was chosen, unless that is the sheet's, or no month yet.
    void ChooseMonth();
    void ShowSheet(std::chrono::year_month month);
    void FocusFirstCell();

    void CopyLastMonth();
    void PasteCells();
    void ShowUnmatched(const std::vector<UnmatchedLine>& lines);
    void NoteChange();
    void ShowSums();
    /// Reads what the overview knows, in steps, after the window is open.
    void BeginOutlook();
    void StepOutlook();
    void ShowOutlook();
    void TellOutlook(const QString& text, bool isWorse);
    void ShowWrong();

    /// True if nothing is left to save.
    bool Save();
    bool SaveChanges();
    bool FindNoFaults();
    /// For the next new record in the usage editor.
    void Remember(const SheetChanges& changes);
    /// Says beside their rows why nothing was saved.
    void ShowRefused(const SheetChanges& changes, const std::vector<RefusedChange>& refused);
    void ReadAgain(bool keepsTyped);
    /// Enters into the sheet what was typed into the one that is shown.
    void TakeOver(MonthSheet& sheet);

    AppContext& m_app;
    std::unique_ptr<SheetRecords> m_records;
    MonthSheetTable m_table;
    QTimer m_changed{this};     ///< one for all changes of a key
    QTimer m_nextOutlook{this}; ///< step
    std::unique_ptr<SheetOutlook> m_outlook;
    bool m_hasSaved = false;
    std::unique_ptr<Ui::frmMonthSheet> m_ui;
};

/// True if something was saved.
bool ShowMonthSheet(AppContext& app, QWidget* parent);
} // namespace mact
