#pragma once

#include "base/app_context.h"
#include "overview/overview_options.h"
#include "overview/untrusted_figures.h"
#include "overview/what_if_entry.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <vector>

class QComboBox;

namespace Ui {
class frmWhatIf;
}

namespace mact {

/// Tries changes out: the figures of twelve month ends before and after, side by side. The changes last until
/// the window closes; the records stay as they are, in memory and on the disk.
class frmWhatIf : public QDialog {
    Q_OBJECT

public:
    /// `shop` outlives the window.
    frmWhatIf(const AppContext& app, const ShopRecords& shop, const OverviewOptions& options,
              MonthNumber monthEnd, QWidget* parent);
    ~frmWhatIf() override;

private:
    void ConnectControls();
    void MakeRoom();
    void FillMaterials();
    /// Shows the fields of the kind of change, and takes the material's methods.
    void ShowKind();
    /// Says what the entry starts from and what is wrong with it.
    void CheckEntry();
    WhatIfEntry ReadEntry() const;
    void AddChange();
    void RemoveChange();
    void TakeChanges(std::vector<WhatIfChange> changes);
    void EnableListButtons();
    /// The records with the changes in the list.
    const ShopRecords& Changed() const { return m_changes.empty() ? m_shop.Shop() : m_changed; }
    std::optional<std::size_t> ChosenMaterial(const QComboBox& combo) const;

    void BeginSteps();
    /// Does the next part of the calculation, so that the window stays alive meanwhile.
    void Step();
    void ShowFigures();
    void ShowMonths();
    /// Says if the figure at the last month end, without changes, is not to be trusted.
    void ShowTrust();
    /// What makes the chosen figure not trusted there.
    std::size_t FindingsOfFigure() const;
    void ShowBreakEven();

    /// A month end before and after.
    struct Month {
        MonthComparison Compared{};
        int Months = 0; ///< since the start month
    };
    QStringList CellsOf(const Month& month) const;

    ShopFigures m_shop; ///< without changes
    std::optional<MonthNumber> m_start;
    MonthNumber m_first = 0; ///< the oldest month end
    MonthNumber m_last = 0;
    // Found before the window opens: that takes longer than a step may.
    const MonthFigures m_newest;        ///< of m_last without changes
    const UntrustedFigures m_untrusted; ///< the same
    std::vector<WhatIfChange> m_changes;
    ShopRecords m_changed; ///< what Changed returns once there are changes

    QTimer m_steps{this};
    std::unique_ptr<ShopFigures> m_after; ///< of Changed(); none until its step
    std::vector<MonthFigures> m_before;   ///< from m_first on, as far as calculated
    std::vector<Month> m_months;          ///< the same
    std::vector<BreakEven> m_breakEvens;
    std::vector<std::string> m_contents; ///< the items of cbo_Figure behind those of the average
    std::unique_ptr<Ui::frmWhatIf> m_ui;
};

/// Shows what would be at the twelve month ends up to `monthEnd`. `shop` outlives the call.
void ShowWhatIf(AppContext& app, const ShopRecords& shop, const OverviewOptions& options,
                MonthNumber monthEnd, QWidget* parent);
} // namespace mact
