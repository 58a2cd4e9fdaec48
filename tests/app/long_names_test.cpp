#include "dialogs/elided_label.h"
#include "dialogs/program_style.h"
#include "materials/material_store.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "tests/support/sample_shop.h"
#include "tests/support/window_rows.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <array>
#include <fstream>

namespace mact {
namespace {

/// A screen of 1024x768, less a window's title bar.
constexpr QSize OldScreen{1024, 738};

/// Without a blank at which it could be broken.
std::string Long(char first, std::size_t length) {
    return first + std::string(length - 1, 'W');
}

/// The sample shop with names as long as records can hold, and longer ones of pollutants.
void LengthenNames(SampleShop& shop) {
    std::vector<MaterialRecord> materials;
    FindMaterials(shop.App, {}, materials);
    std::ofstream file(shop.DataFile("1_materials.talvor"), std::ios::binary);
    for (MaterialRecord& material : materials) {
        material.CustomId = std::to_string(material.MaterialId) + Long('i', 50);
        material.Description = Long('d', 100);
        material.Comments = Long('c', 255);
        file << Pack(MaterialLayout, material);
    }
    file.close();
    const CompanyRecord company{.CompanyId = shop.App.CurrentCompanyId,
                                .CompanyName = Long('n', 250),
                                .CompanyLocation = Long('l', 250)};
    if (!StoreCompany(shop.App, company)) qFatal("The company was not saved");
    shop.App.CurrentCompanyName = company.CompanyName;
    shop.App.CurrentCompanyLocation = company.CompanyLocation;
    std::array<std::string, 6> names;
    std::ranges::generate(names, [letter = 'A']() mutable { return Long(letter++, 300); });
    if (!SaveAdditionalNames(shop.App, {names[0], names[1], names[2], names[3], names[4], names[5]}))
        qFatal("The names were not saved");
    LoadAdditionalNames(shop.App);
}

/// What the label cannot show of its text, even if it is broken into lines, can be read nowhere.
bool IsCut(const QLabel& label) {
    const bool hasWholeAsToolTip =
        !label.text().isEmpty() && label.toolTip().contains(label.text().toHtmlEscaped());
    if (qobject_cast<const ElidedLabel*>(&label) || hasWholeAsToolTip) return false;
    if (!label.wordWrap()) return label.sizeHint().width() > label.width();
    if (label.heightForWidth(label.width()) > label.height()) return true;
    const auto widthOf = [&label](const QString& text) {
        return label.fontMetrics().horizontalAdvance(text);
    };
    const QStringList words = label.text().split(QRegularExpression(QStringLiteral("[\\s\u200B]")));
    return std::ranges::any_of(words, [&](const QString& word) { return widthOf(word) > label.width(); });
}

} // namespace

/// Whether windows can show names that are as long as records can hold.
class long_names_test : public QObject {
    Q_OBJECT

    SampleShop m_shop;

    void InThisWindow(const std::function<void(QWidget&)>& act) {
        QFETCH(const int, row);
        m_shop.Restore();
        LengthenNames(m_shop);
        InWindow(AllWindows()[static_cast<std::size_t>(row)], m_shop.App, nullptr, act);
    }

    static void EachWindow() { AddRows(AllWindows()); }

private slots:
    void initTestCase() { QApplication::setStyle(new ProgramStyle); }

    void Every_window_opens_no_larger_than_an_old_screen_data() { EachWindow(); }
    void Every_window_opens_no_larger_than_an_old_screen() {
        InThisWindow([](const QWidget& window) {
            const QSize size = window.size();
            QVERIFY2(size.boundedTo(OldScreen) == size,
                     qPrintable(QStringLiteral("%1x%2").arg(size.width()).arg(size.height())));
        });
    }

    void No_label_is_cut_data() { EachWindow(); }
    void No_label_is_cut() {
        InThisWindow([](const QWidget& window) {
            QCoreApplication::processEvents();
            QStringList names;
            for (const auto* label : window.findChildren<QLabel*>())
                if (label->isVisibleTo(&window) && IsCut(*label)) names << label->objectName();
            QCOMPARE(names.join(u' '), QString());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::long_names_test)
#include "long_names_test.moc"
