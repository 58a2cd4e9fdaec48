#pragma once

#include "base/app_context.h"
#include "materials/material_entry.h"

#include <QDialog>

#include <cstdint>
#include <memory>

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

    /// From now on the editor is for this stored material.
    void PrepareEdit(const MaterialRecord& material);
    /// Says what is wrong, and whether nothing is.
    bool Validate_Form();
    /// Appends the entries as a new material, unless its Material ID exists, and closes.
    void Check_4_Save();
    /// Overwrites the material that is edited, and closes. A Material ID that another one has is accepted.
    void Check_4_Update();
    /// 0 after a save, otherwise -1.
    std::int16_t Outcome() const;

private:
    TypedMaterial ReadForm() const;
    QWidget& BoxOf(MaterialField field) const;
    void ShowMethodsOfType();
    void ShowFiller(const QString& filler, bool canBeTyped);
    void ShowEmissionFactor(bool isTicked);
    void ShowPollutants();
    void Save();
    void CloseWhenSaved(Failed hasFailed);

    AppContext& m_app;
    std::unique_ptr<Ui::frmMaterial> m_ui;
    std::unique_ptr<frmOtherPollutants> m_pollutants; ///< hidden, but for the while that the user edits there
    bool m_hasTypeJustChanged = false;
};

/// Both return 0 when a material was saved, otherwise -1.
std::int16_t NewMaterial(AppContext& app, QWidget* parent);
std::int16_t EditMaterial(AppContext& app, std::int16_t materialId, QWidget* parent);
} // namespace mact
