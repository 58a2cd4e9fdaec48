#pragma once

#include "base/app_context.h"
#include "materials/material_entry.h"
#include "store/material_types.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

class QWidget;

namespace Ui {
class frmMaterial;
}

namespace mact {

class frmOtherPollutants;

/// The editor of a material, new or existing.
class frmMaterial : public QDialog {
    Q_OBJECT

public:
    /// For a new material.
    frmMaterial(AppContext& app, QWidget* parent);
    ~frmMaterial() override;

    /// Makes this the editor of a stored material.
    void PrepareEdit(const MaterialRecord& material);
    /// Shows what is wrong. True if nothing is.
    bool Validate_Form();
    /// Appends a new material and closes, unless the Material ID is taken.
    void Check_4_Save();
    /// Overwrites the edited material and closes. A Material ID that another material has is accepted.
    void Check_4_Update();
    /// 0 after a save, otherwise -1.
    std::int16_t Outcome() const;

private:
    TypedMaterial ReadForm() const;
    QWidget& BoxOf(MaterialField field) const;
    void ShowMethodsOfType();
    void ShowFiller(const QString& filler, bool canBeTyped);
    void ShowEmissionFactor(bool isTicked);
    void FollowEntries();
    void ShowHints();
    void ShowPollutants();
    void Save();
    void CloseWhenSaved(Failed hasFailed);

    AppContext& m_app;
    std::unique_ptr<Ui::frmMaterial> m_ui;
    std::unique_ptr<frmOtherPollutants> m_pollutants; ///< hidden, except while the user edits there
    std::vector<HapContentRecord> m_types;            ///< the table, for the hints
    bool m_hasTypeJustChanged = false;
};

/// Both return 0 if a material was saved, otherwise -1.
std::int16_t NewMaterial(AppContext& app, QWidget* parent);
std::int16_t EditMaterial(AppContext& app, std::int16_t materialId, QWidget* parent);
} // namespace mact
