#pragma once

#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "store/additional_names.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

namespace mact {

/// Helpers for the tests of the material editor.

using Act = std::function<void(frmMaterial&)>;

inline const std::string FormErrorsHead = "Error(s) found while processing the form:\r\n\r\n";

inline QLineEdit& Edit(const QWidget& window, const char* name) {
    return Named<QLineEdit>(window, name);
}

inline QComboBox& Combo(const QWidget& window, const char* name) {
    return Named<QComboBox>(window, name);
}

inline void Type(const QWidget& window, const char* name, const char* text) {
    Edit(window, name).clear();
    Edit(window, name).insert(QString::fromUtf8(text));
}

inline void Select(const QWidget& window, const char* name, const char* text) {
    const int row = Combo(window, name).findText(QString::fromLatin1(text), Qt::MatchExactly);
    QVERIFY2(row >= 0, text);
    Combo(window, name).setCurrentIndex(row);
}

inline void Press(const QWidget& window, const char* button) {
    Named<QAbstractButton>(window, button).click();
}

inline QStringList Lines(const QComboBox& combo) {
    QStringList lines;
    for (int row = 0; row < combo.count(); ++row)
        lines << combo.itemText(row);
    return lines;
}

/// Types what a new material needs, with a type that takes no filler.
inline void Fill(const QWidget& window, const char* customId) {
    Type(window, "txt_CustomId", customId);
    Type(window, "txt_Description", "White gel coat");
    Select(window, "cbo_MaterialType", "Production resin");
    Type(window, "txt_density", "9.25");
    Type(window, "txt_HapContents", "35");
}

/// A program with the default material types and no additional pollutants.
struct MaterialProgram : TestProgram {
    const std::filesystem::path File = DataFile("1_materials.talvor");

    MaterialProgram() {
        App.AdditionalNames = UnusedNames;
        WriteTypes();
    }
    void WriteTypes() { QVERIFY(CreateDefaultHapContents(App)); }

    std::int16_t New(const Act& act) {
        InNextModal<frmMaterial>(act);
        return NewMaterial(App, nullptr);
    }
    std::int16_t Edit(std::int16_t materialId, const Act& act) {
        InNextModal<frmMaterial>(act);
        return EditMaterial(App, materialId, nullptr);
    }
    /// Stores a material without the editor.
    void Store(const std::string& customId, const std::function<void(MaterialEntry&)>& change = {}) {
        MaterialEntry entry{.CustomId = customId,
                            .Description = "Resin " + customId,
                            .MaterialType = "Production resin",
                            .ApplicationMethod = "Non-Spray",
                            .Density = 9.2,
                            .HapContent = 35,
                            .Contents = "0|0|0|0|0|0",
                            .Factors = "0|0|0|0|0|0"};
        if (change) change(entry);
        QVERIFY(!SaveMaterial(App, entry));
    }
    std::vector<MaterialRecord> Materials() {
        std::vector<MaterialRecord> found;
        FindMaterials(App, {}, found);
        return found;
    }
    MaterialRecord Only() {
        const std::vector<MaterialRecord> materials = Materials();
        if (materials.size() != 1) qFatal("There are %zu materials", materials.size());
        return materials.front();
    }
};

/// The same program, and a context whose files can fail.
struct LimitedProgram : MaterialProgram {
    LimitedFiles Limited;
    AppContext LimitedApp{Prompts, Settings, Programs, Dialogs, Calendar, Limited, App.ProgramFolder, 1};
};
} // namespace mact
