#include "app/frm_config.h"
#include "app/frm_main.h"
#include "app/startup.h"
#include "base/text.h"
#include "lists/frm_list.h"
#include "materials/frm_material.h"
#include "materials/frm_other_pollutants.h"
#include "materials/material_store.h"
#include "platform/qt_programs.h"
#include "reports/frm_reports.h"
#include "store/frm_company.h"
#include "store/frm_extra_pollutants_names.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace mact {
namespace {

const std::string ErrorsTitle = "Error(s) found while processing the form:\r\n\r\n";

/// A material as it is typed in.
struct Material {
    const char* CustomId;
    const char* Description;
    const char* Type;
    const char* Method;
    const char* Density;
    const char* HapContent;
    const char* Filler;         ///< for a filled resin only
    const char* EmissionFactor; ///< mostly empty; given with its basis
};
constexpr Material Materials[] = {
    {"PR-1", "Layup resin",    "Production resin",          "Spray",                                 "9.2",  "35",   "",     ""    },
    {"PR-2", "Roller resin",   "Production resin",          "Non-Spray",                             "9.25", "33.5", "",     ""    },
    {"PR-3", "Infusion resin", "Production resin",          "Closed Molding",                        "9",    "44",   "",     ""    },
    {"GC-W", "White gel coat", "Pigmented production gel",  "All",                                   "10.5", "33",   "",     ""    },
    {"GC-C", "Clear gel coat", "Clear production gel coat", "All",                                   "9.1",  "47",   "",     ""    },
    {"TR-1", "Tooling resin",  "Tooling resin",             "Spray (Vacuum bagging after roll-out)", "9.3",  "30",   "",     ""    },
    {"TG-1", "Tooling gel",    "Tooling gel coat",          "All",                                   "10",   "41",   "",     ""    },
    {"PF-1", "Filled resin",   "Production resin (Filled)", "Spray",                                 "11",   "30",   "40",   ""    },
    {"TF-1", "Filled tooling", "Tooling resin (Filled)",    "Non-Spray",                             "11.5", "31",   "25.5", ""    },
    {"AF-1", "Tested resin",   "Production resin",          "Spray",                                 "9.2",  "28",   "",     "57.5"},
};

} // namespace

/// A shop's first year in the real windows, all of it entered by hand. The real script copies the backups.
class first_year_test : public QObject {
    Q_OBJECT

    TestProgram m_program;
    QtPrograms m_programs;
    AppContext m_app{m_program.Prompts,          m_program.Settings, m_programs,
                     m_program.Dialogs,          m_program.Calendar, m_program.Files,
                     m_program.App.ProgramFolder};

    static void Click(const QObject& window, const char* button) {
        Named<QPushButton>(window, button).click();
    }
    static void Type(const QObject& window, const char* edit, const QString& text) {
        auto& line = Named<QLineEdit>(window, edit);
        QVERIFY2(line.isEnabled(), edit);
        line.selectAll();
        QTest::keyClicks(&line, text);
    }
    static void Choose(const QObject& window, const char* combo, const QString& text) {
        auto& box = Named<QComboBox>(window, combo);
        QVERIFY2(box.findText(text) >= 0, qPrintable(text));
        box.setCurrentIndex(box.findText(text));
    }
    static void TypeYear(const QObject& window, const char* combo, const QString& year) {
        QLineEdit& edit = *Named<QComboBox>(window, combo).lineEdit();
        edit.selectAll();
        QTest::keyClicks(&edit, year);
    }
    static QStringList Lines(const QObject& list) {
        const auto& lines = Named<QListWidget>(list, "lst_Main");
        QStringList texts;
        for (int row = 0; row < lines.count(); ++row)
            texts << lines.item(row)->text();
        return texts;
    }
    static void SelectLine(const QObject& list, const QString& text) {
        const auto found = static_cast<int>(Lines(list).indexOf(text));
        QVERIFY2(found >= 0, qPrintable(text));
        Named<QListWidget>(list, "lst_Main").setCurrentRow(found);
    }

    /// The messages shown since the last call.
    std::vector<std::string> Told() {
        std::vector<std::string> texts = m_program.ShownTexts();
        m_program.Prompts.Shown.clear();
        return texts;
    }

    static void TypeMaterial(frmMaterial& window, const Material& material) {
        Type(window, "txt_CustomId", QString::fromLatin1(material.CustomId));
        Type(window, "txt_Description", QString::fromLatin1(material.Description));
        Choose(window, "cbo_MaterialType", QString::fromLatin1(material.Type));
        Choose(window, "cbo_ApplicationType", QString::fromLatin1(material.Method));
        Type(window, "txt_density", QString::fromLatin1(material.Density));
        Type(window, "txt_HapContents", QString::fromLatin1(material.HapContent));
        if (*material.Filler) Type(window, "txt_filler", QString::fromLatin1(material.Filler));
        if (!*material.EmissionFactor) return;
        Named<QCheckBox>(window, "chk_EmissionFactor").click();
        Type(window, "txt_EmissionFactor", QString::fromLatin1(material.EmissionFactor));
        Type(window, "txt_Comments", QStringLiteral("Stack test 2025"));
        InNextModal<frmOtherPollutants>([](frmOtherPollutants& pollutants) {
            QCOMPARE(TextOf<QLabel>(pollutants, "lbl_poll_0"), std::string("MMA"));
            Type(pollutants, "txt_pollcontent_0", QStringLiteral("5"));
            Type(pollutants, "txt_pollEFactor_0", QStringLiteral("75"));
            Type(pollutants, "txt_pollcontent_1", QStringLiteral("30"));
            Type(pollutants, "txt_pollEFactor_1", QStringLiteral("10"));
            QVERIFY(!Named<QLineEdit>(pollutants, "txt_pollcontent_2").isEnabled());
            Click(pollutants, "cmd_OK");
        });
        Click(window, "cmd_Additional");
    }
    static void EnterUsage(const frmList& list, const char* material, int month, const char* quantity,
                           const char* unit) {
        InNextModal<frmUsage>([=](frmUsage& window) {
            Choose(window, "cbo_MaterialId", QString::fromLatin1(material));
            auto& months = Named<QComboBox>(window, "cbo_Month");
            months.setCurrentIndex(months.findData(month));
            TypeYear(window, "cbo_Year", QStringLiteral("2026"));
            Type(window, "txt_Quantiry", QString::fromLatin1(quantity));
            Choose(window, "cbo_Unit", QString::fromLatin1(unit));
            Click(window, "cmd_Save");
        });
        Click(list, "cmd_New");
    }
    void Generate(const QObject& reports, const char* month, const char* year, const char* button) {
        Choose(reports, month, QStringLiteral("DEC"));
        TypeYear(reports, year, QStringLiteral("2026"));
        Click(reports, button);
    }

    /// The last thing that a backup's copy does is to remove the note of what the set should hold.
    bool HasCopyEnded() const { return !std::filesystem::exists(m_app.ProgramFolder / "backup.mact.note"); }

    /// Whether the folder holds every file of the data folder, byte for byte, and nothing else.
    bool IsCopyOfData(const std::filesystem::path& folder) const {
        std::map<std::string, std::string> files;
        std::map<std::string, std::string> copies;
        std::error_code ignored;
        for (const auto& file : std::filesystem::directory_iterator(m_app.ProgramFolder / "data"))
            files[PathText(file.path().filename())] = ContentOf(file.path());
        for (const auto& file : std::filesystem::directory_iterator(folder, ignored))
            copies[PathText(file.path().filename())] = ContentOf(file.path());
        return !files.empty() && files == copies;
    }
    static int CountOf(const std::string& text, std::string_view part) {
        int count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }

    std::unique_ptr<frmMain> m_main;
    std::filesystem::path m_backups = m_program.Folder.Path() / "back ups $(touch x)";

private slots:
    void initTestCase() {
        std::filesystem::remove_all(m_app.ProgramFolder / "data");
        std::filesystem::create_directory(m_backups);
        m_program.Calendar.Month = {std::chrono::year{2026}, std::chrono::January};
        QVERIFY(StartUp(m_app));
        m_main = std::make_unique<frmMain>(m_app);
        m_main->show();
    }

    void January_the_company_is_entered_and_selected() {
        InNextModal<frmCompany>([](frmCompany& window) {
            Type(window, "txt_CompanyName", QStringLiteral("Heron Boats"));
            Type(window, "txt_CompanyLocation", QStringLiteral("Dock 4"));
            Click(window, "cmd_Save");
            Named<QListWidget>(window, "lst_Companies").setCurrentRow(0);
            Click(window, "cmd_Switch");
        });
        Click(*m_main, "cmd_Company");
        QCOMPARE(m_app.CurrentCompanyId, std::int16_t{1});
    }

    void January_backups_and_two_additional_pollutants_are_configured() {
        m_program.Dialogs.Choice = m_backups;
        InNextModal<frmConfig>([](frmConfig& window) {
            Click(window, "cmd_Folder");
            Named<QCheckBox>(window, "chk_auto").click();
            InNextModal<frmExtraPollutantsNames>([](frmExtraPollutantsNames& names) {
                Type(names, "txt_pname_0", QStringLiteral("MMA"));
                Type(names, "txt_pname_1", QStringLiteral("Styrene"));
                Click(names, "cmd_OK");
            });
            Click(window, "cmd_ExtraPollutants");
            Click(window, "cmd_Save");
        });
        Click(*m_main, "cmd_Config");
        QCOMPARE(ContentOf(m_program.DataFile("1_additional.talvor")),
                 std::string("MMA|Styrene|-|-|-|-\r\n"));
        QCOMPARE(Told(), std::vector<std::string>{});
    }

    void January_ten_materials_are_entered() {
        InNextModal<frmList>([](frmList& list) {
            for (const Material& material : Materials) {
                InNextModal<frmMaterial>([&material](frmMaterial& window) {
                    TypeMaterial(window, material);
                    Click(window, "cmd_Save");
                });
                Click(list, "cmd_New");
                QVERIFY(Named<QListWidget>(list, "lst_Main").item(0)->isSelected());
            }
            QCOMPARE(Lines(list).size(), 10);
            QCOMPARE(Lines(list).back(), QStringLiteral("AF-1 - Tested resin"));
        });
        Click(*m_main, "cmd_Material");
        QCOMPARE(Told(), std::vector<std::string>{});

        std::vector<MaterialRecord> stored;
        QVERIFY(FindMaterials(m_app, {}, stored));
        QCOMPARE(stored.size(), std::size_t{10});
        for (std::size_t index = 0; index < stored.size(); ++index) {
            const Material& typed = Materials[index];
            const MaterialRecord& material = stored[index];
            QCOMPARE(material.CustomId.substr(0, 4), std::string(typed.CustomId));
            QCOMPARE(std::string(Trim(material.MaterialType)), std::string(typed.Type));
            QCOMPARE(std::string(Trim(material.ApplicationMethod)), std::string(typed.Method));
            QCOMPARE(material.Density, QString::fromLatin1(typed.Density).toDouble());
            QCOMPARE(material.HapContent, QString::fromLatin1(typed.HapContent).toDouble());
            QCOMPARE(material.Filler, QString::fromLatin1(typed.Filler).toDouble()); // 0 without one
            QCOMPARE(material.EmissionFactor, QString::fromLatin1(typed.EmissionFactor).toDouble());
        }
        QCOMPARE(std::string(Trim(stored.back().Comments)), std::string("Stack test 2025"));
        QCOMPARE(stored.back().Content1, 5.0);
        QCOMPARE(stored.back().Factor2, 10.0);
    }

    void February_one_material_is_edited_and_one_refused() {
        InNextModal<frmList>([this](frmList& list) {
            SelectLine(list, QStringLiteral("GC-C - Clear gel coat"));
            InNextModal<frmMaterial>([](frmMaterial& window) {
                QCOMPARE(window.windowTitle(), QStringLiteral("Update Material"));
                Type(window, "txt_HapContents", QStringLiteral("48"));
                Click(window, "cmd_Save");
            });
            Click(list, "cmd_Edit");
            InNextModal<frmMaterial>([this](frmMaterial& window) {
                TypeMaterial(window,
                             {" gc-w ", "Another white", "Tooling resin", "Spray", "9", "30", "", ""});
                Click(window, "cmd_Save");
                QCOMPARE(Told(), std::vector{ErrorsTitle + "- Material with the same Id already exsists."});
                Click(window, "cmd_Cancel");
            });
            Click(list, "cmd_New");
            QCOMPARE(Lines(list).size(), 10);
        });
        Click(*m_main, "cmd_Material");
        std::vector<MaterialRecord> clear;
        QVERIFY(FindMaterials(m_app, {.CustomId = "GC-C"}, clear));
        QCOMPARE(clear.front().HapContent, 48.0);
    }

    void Through_the_year_usage_is_entered_month_by_month() {
        InNextModal<frmList>([this](frmList& list) {
            for (int month = 1; month <= 12; ++month) {
                EnterUsage(list, "GC-W", month, "100", "lbs");
                EnterUsage(list, "PR-2", month, "0.5", "Mgal");
            }
            EnterUsage(list, "AF-1", 3, "2204.6", "lbs"); // 1000 kg
            QCOMPARE(Told(), std::vector<std::string>{});
            EnterUsage(list, "PR-2", 12, "0.5", "Mgal");
            QCOMPARE(Told(),
                     std::vector{ErrorsTitle + "- Usage with the same Material ID and Date already exsist."});
            QCOMPARE(Lines(list).size(), 25);
            QCOMPARE(Lines(list).back(), QStringLiteral("AF-1 (3/2026)"));
        });
        Click(*m_main, "cmd_Usage");
    }

    void December_a_used_material_is_not_deleted() {
        m_program.Prompts.Answers = {PromptAnswer::Yes};
        InNextModal<frmList>([](frmList& list) {
            SelectLine(list, QStringLiteral("GC-W - White gel coat"));
            Click(list, "cmd_Delete");
            QCOMPARE(Lines(list).size(), 10);
        });
        Click(*m_main, "cmd_Material");
        QCOMPARE(Told(),
                 std::vector<std::string>(
                     {"Are you sure you want to delete GC-W - White gel coat? This can not be undone.",
                      "There are one or more usage records associated with this material.\r\n"
                      "You can not delete this material untill you remove all usage records."}));
    }

    void December_the_list_is_filtered_and_reset() {
        InNextModal<frmList>([](frmList& list) {
            Choose(list, "cbo_Materials", QStringLiteral("GC-W"));
            Choose(list, "cbo_Year", QStringLiteral("2026"));
            Click(list, "cmd_Filter");
            QCOMPARE(Lines(list).size(), 12);
            QCOMPARE(Lines(list).front(), QStringLiteral("GC-W (1/2026)"));
            Click(list, "cmd_Filter");
            QCOMPARE(Lines(list).size(), 25);
        });
        Click(*m_main, "cmd_Usage");
        QCOMPARE(Told(), std::vector<std::string>{});
    }

    void December_the_five_reports_are_made() {
        InNextModal<frmReports>([this](frmReports& window) {
            Named<QRadioButton>(window, "opt_materials_1").click();
            Generate(window, "cbo_Month", "cbo_Year", "cmd_Generate");
            Generate(window, "cbo_Month2", "cbo_Year2", "cmd_Generate2");
            Generate(window, "cbo_Month3", "cbo_Year3", "cmd_Generate3");
            Generate(window, "cbo_Month4", "cbo_Year4", "cmd_Generate4");
            Generate(window, "cbo_Month5", "cbo_Year5", "cmd_Generate5");
        });
        Click(*m_main, "cmd_Reports");
        std::vector<std::string> expected;
        for (const char* file : {"report.htm", "report2.htm", "report3.htm", "report4.htm", "report5.htm"}) {
            expected.push_back("Report generated sucessfully and has been saved as\r\n" +
                               PathText(m_program.ProgramFile(file)) +
                               "\r\nYou can define a default browser in configuration to view the report "
                               "automatically.");
            const std::string page = ContentOf(m_program.ProgramFile(file));
            QVERIFY2(page.find("<u>Heron Boats</u>") != std::string::npos, file);
            QVERIFY2(page.find("<u>01/2026</u>") != std::string::npos, file);
            QVERIFY2(page.find("<u>12/2026</u>") != std::string::npos, file);
        }
        QCOMPARE(Told(), expected);
        // 25 uses, all of materials that comply: 33, 33.5 and 28 are within 33, 35 and 28.
        const std::string compliant = ContentOf(m_program.ProgramFile("report.htm"));
        QCOMPARE(CountOf(compliant, "color='green'>Yes<"), 25);
        QCOMPARE(CountOf(compliant, "color='red'>No<"), 0);
        // 12 x 100 lbs; 12 x 0.5 Mgal x 9.25 lb/gal x 1000; 2204.6 lbs
        const std::string usage = ContentOf(m_program.ProgramFile("report4.htm"));
        for (const char* pounds : {">1200<", ">55500<", ">2204.6<"})
            QCOMPARE(CountOf(usage, pounds), 1);
        // Of 1000 kg: 5 % x 75 % = 37.5, rounded to the even 38; 30 % x 10 % = 30.
        const std::string emission = ContentOf(m_program.ProgramFile("report5.htm"));
        for (const char* kilograms : {">38.00<", ">30.00<", "><b>68.00</b><"})
            QCOMPARE(CountOf(emission, kilograms), 1);
    }

    void December_a_backup_is_made() {
        const std::filesystem::path set = m_backups / "talvor_backupset_1";
        Click(*m_main, "cmd_Backup");
        QCOMPARE(Told(), std::vector{"Backup has been completed in folder " + PathText(set)});
        QTRY_VERIFY(HasCopyEnded());
        QVERIFY(IsCopyOfData(set));
    }

    void At_the_end_the_program_backs_up_and_ends() {
        QTimer::singleShot(0, m_main.get(), [this] { Click(*m_main, "cmd_Exit"); });
        QCOMPARE(QApplication::exec(), 0);
        QTRY_VERIFY(HasCopyEnded());
        QVERIFY(IsCopyOfData(m_backups / "talvor_backupset_2"));
        QCOMPARE(Told(), std::vector<std::string>{});
        QVERIFY(!std::filesystem::exists(m_backups / "talvor_backupset_3"));
        QVERIFY(!std::filesystem::exists(m_app.ProgramFolder / "x"));
        QVERIFY(!std::filesystem::exists("x"));
    }
};
} // namespace mact

QTEST_MAIN(mact::first_year_test)
#include "first_year_test.moc"
