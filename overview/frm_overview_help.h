#pragma once

#include "base/app_context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmOverviewHelp;
}

namespace mact {

/// Says what the figures of the overview mean, which rule each serves, and which report shows it.
class frmOverviewHelp : public QDialog {
    Q_OBJECT

public:
    explicit frmOverviewHelp(QWidget* parent);
    ~frmOverviewHelp() override;

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// In the colours of the moment: a link takes its colour when the page is read.
    void ShowPage();
    void Find();

    std::unique_ptr<Ui::frmOverviewHelp> m_ui;
};

void ShowOverviewHelp(AppContext& app, QWidget* parent);
} // namespace mact
