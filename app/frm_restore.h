#pragma once

#include "app/backup_sets.h"

#include <QDialog>
#include <QTimer>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

class QPaintEvent;

namespace Ui {
class frmRestore;
}

namespace mact {

/// Lists the backup sets, newest first, and puts one of them in the place of the data. The sets are looked
/// into one after the other once the window is painted.
class frmRestore : public QDialog {
    Q_OBJECT

public:
    frmRestore(AppContext& app, QWidget* parent);
    ~frmRestore() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// A set in the table, in the row of its place.
    struct Row {
        FoundSet Found;
        std::optional<SetDescription> Description{}; ///< empty = not looked into yet
    };

    void ConnectControls();
    void MakeRoom();
    void FindSets();
    /// Lists them above the others; one that is listed is listed anew.
    void AddSets(const std::vector<FoundSet>& sets);
    void SelectSet(const std::filesystem::path& set);
    /// Looks into the next set, so that the window stays alive meanwhile.
    void Step();
    void ShowRow(std::size_t number);
    void ShowSelected();
    /// Nothing is restored until the user has ticked that for the selected set.
    void EnableButtons();
    void ChooseFolder();
    void Restore();
    Row* Selected();

    AppContext& m_app;
    std::unique_ptr<Ui::frmRestore> m_ui;
    std::vector<Row> m_rows;
    QTimer m_steps{this};
    bool m_isPainted = false;
};

void ShowRestore(AppContext& app, QWidget* parent);
} // namespace mact
