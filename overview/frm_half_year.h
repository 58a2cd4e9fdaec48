#pragma once

#include "base/app_context.h"
#include "overview/half_year.h"
#include "overview/kept_pack.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class frmHalfYear;
}

namespace mact {

class DifferenceLines;

/// The half-year packs of the current company: makes one, and holds those that are kept against the records
/// of `shop`, one pack at a time so that the window does not block.
class frmHalfYear : public QDialog {
    Q_OBJECT

public:
    frmHalfYear(AppContext& app, const ShopFigures& shop, MonthNumber monthEnd, QWidget* parent);
    ~frmHalfYear() override;

private:
    struct Pack {
        HalfYear Half{};
        std::optional<Result<std::vector<PackDifference>>> Compared{}; ///< empty = not yet
    };

    void ChooseHalf(HalfYear half);
    /// Empty if no year is chosen.
    std::optional<HalfYear> ChosenHalf() const;
    void ShowDueDate();
    void MakePack();
    void ShowMade(HalfYear half, const PackFiles& made);
    void ListPacks();
    void SelectPack(HalfYear half);
    void CompareNextPack();
    void ShowDifferences();
    void OpenPage();
    /// Null without a selection.
    const Pack* SelectedPack() const;
    static QString LineOf(const Pack& pack);

    AppContext& m_app;
    const ShopFigures& m_shop;
    std::unique_ptr<Ui::frmHalfYear> m_ui;
    std::unique_ptr<DifferenceLines> m_lines;
    std::vector<Pack> m_packs; ///< newest first, as in the list
    std::size_t m_comparedCount = 0;
    QTimer m_comparing;
};

/// `shop` has today's records and outlives the window; `monthEnd` says which half year to begin with.
void ShowHalfYearPacks(AppContext& app, const ShopFigures& shop, MonthNumber monthEnd, QWidget* parent);
} // namespace mact
