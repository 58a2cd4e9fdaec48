#include "app/frm_main.h"
#include "benchmarks/bench_shop.h"
#include "dialogs/program_style.h"
#include "lists/frm_month_sheet.h"
#include "lists/sheet_view.h"
#include "overview/verdict.h"
#include "usage/usage_store.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

using namespace mact;

// mact_window_bench FOLDER
//
// Opens both lists of the shop that mact_bench made in FOLDER/all and types in them. Prints how long it takes
// from the click to the painted window, and the longest time for which a key blocks the window. Then the same
// of the overview, where the key goes to another month or row, and of the steps of the main window's verdict.
// The month's sheet is that of FOLDER/month, a shop that used all of its materials in the last month.

namespace {

constexpr int Rounds = 9;
constexpr double MostMsToOpen = 300;
constexpr double MostMsBlocked = 50;

double Ms(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Calls `then` once the list of that name, in the next window to open, has been painted.
class NextPaintedList : public QObject {
public:
    NextPaintedList(const char* name, std::function<void(QAbstractItemView&)> then)
        : m_name(QLatin1String(name)), m_then(std::move(then)) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && !m_isPainted) {
            auto* list = qobject_cast<QAbstractItemView*>(watched->parent());
            if (list && list->viewport() == watched && list->objectName() == m_name) {
                m_isPainted = true;
                // After all paint events of the window.
                QTimer::singleShot(0, list, [this, list] { m_then(*list); });
            }
        }
        return false;
    }

private:
    QLatin1String m_name;
    std::function<void(QAbstractItemView&)> m_then;
    bool m_isPainted = false;
};

/// The longest time for which one of the keys blocks the window.
double LongestBlock(QWidget& typedInto, const char* keys) {
    double longest = 0;
    for (const char* key = keys; *key != 0; ++key) {
        QElapsedTimer timer;
        timer.start();
        const QString text(QChar::fromLatin1(*key));
        QKeyEvent press(QEvent::KeyPress, text.toUpper().at(0).unicode(), Qt::NoModifier, text);
        QApplication::sendEvent(&typedInto, &press);
        QKeyEvent release(QEvent::KeyRelease, text.toUpper().at(0).unicode(), Qt::NoModifier, text);
        QApplication::sendEvent(&typedInto, &release);
        QApplication::processEvents();
        longest = std::max(longest, Ms(timer));
    }
    return longest;
}

struct Opened {
    std::vector<double> OpenMs{};
    double LongestBlockMs = 0;
};

Opened OpenAndType(frmMain& main, const char* button) {
    Opened opened;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer timer;
        const NextPaintedList painted("lst_Main", [&](QAbstractItemView& view) {
            auto& list = static_cast<QListWidget&>(view);
            opened.OpenMs.push_back(Ms(timer));
            // The first of the texts, a later one, and one that no line begins with.
            for (const char* keys : {"gc-1", "x-31999", "zzz"}) {
                opened.LongestBlockMs = std::max(opened.LongestBlockMs, LongestBlock(list, keys));
                list.setCurrentRow(0);
            }
            for (auto* box : list.window()->findChildren<QComboBox*>())
                if (box->isVisible() && box->isEnabled())
                    opened.LongestBlockMs = std::max(opened.LongestBlockMs, LongestBlock(*box, "x-3zz"));
            list.window()->close();
        });
        timer.start();
        main.findChild<QPushButton*>(QLatin1String(button))->click();
    }
    return opened;
}

double MsOf(const std::function<void()>& act) {
    QElapsedTimer timer;
    timer.start();
    act();
    QApplication::processEvents();
    return Ms(timer);
}

Opened OpenOverviewAndStep(frmMain& main) {
    Opened opened;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer timer;
        const NextPaintedList painted("tbl_Rows", [&](QAbstractItemView& table) {
            opened.OpenMs.push_back(Ms(timer));
            QApplication::processEvents();
            const auto block = [&](const std::function<void()>& act) {
                opened.LongestBlockMs = std::max(opened.LongestBlockMs, MsOf(act));
            };
            for (const char* button : {"cmd_Previous", "cmd_Previous", "cmd_Next"})
                block([&] { table.window()->findChild<QAbstractButton*>(QLatin1String(button))->click(); });
            auto* span = table.window()->findChild<QComboBox*>(QStringLiteral("cbo_Span"));
            block([&] { table.setCurrentIndex(table.model()->index(table.model()->rowCount() - 1, 0)); });
            block([&] { span->setCurrentIndex(2); });
            block([&] { table.model()->sort(0); });
            table.window()->close();
        });
        timer.start();
        main.findChild<QPushButton*>(QStringLiteral("cmd_Overview"))->click();
    }
    return opened;
}

/// Moves all of the shop's usage to LastMonth.
void UseAllInLastMonth(BenchShop& shop) {
    std::vector<UsageRecord> usage;
    FindUsage(shop.App(), {}, usage);
    std::ofstream file(UsageFile(shop.App()), std::ios::binary | std::ios::trunc);
    for (UsageRecord& record : usage) {
        record.Period = LastMonth;
        file << Pack(UsageLayout, record);
    }
}

/// Types into the month's sheet, and takes the time of each key.
class SheetTypist {
public:
    SheetTypist(SheetView& view, double& longestBlockMs) : m_view(view), m_longest(longestBlockMs) {}

    void ChooseRecordedMonth() {
        Block([&] { Child<QComboBox>("cbo_Year")->setCurrentIndex(5); });
        Block([&] { Child<QComboBox>("cbo_Month")->setCurrentIndex(11); });
    }
    /// Quantities, a Material ID, and then last month's quantities in all rows.
    void EnterRows() {
        m_view.setFocus();
        m_view.GoTo(0, MonthSheetTable::Quantity);
        for (const char* quantity : {"12", "1.5", "x"})
            Type(quantity);
        m_view.GoTo(m_view.model()->rowCount() - 1, MonthSheetTable::MaterialId);
        Type("zzz");
        m_view.GoTo(m_view.model()->rowCount() - 2, MonthSheetTable::Quantity);
        Type("7");
        m_view.selectAll();
        Block([&] { Child<QPushButton>("cmd_CopyLast")->click(); });
    }

private:
    template <class T> T* Child(const char* name) {
        return m_view.window()->findChild<T*>(QLatin1String(name));
    }
    void Block(const std::function<void()>& act) { m_longest = std::max(m_longest, MsOf(act)); }
    void Type(const char* keys) {
        for (const char* key = keys; *key != 0; ++key) {
            const QChar letter = QChar::fromLatin1(*key);
            Press(letter.toUpper().unicode(), letter);
        }
        Press(Qt::Key_Return, QStringLiteral("\r"));
    }
    void Press(int key, const QString& text) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        Block([&] { QApplication::sendEvent(m_view.window()->focusWidget(), &press); });
    }

    SheetView& m_view;
    double& m_longest;
};

Opened OpenSheetAndType(AppContext& app) {
    Opened opened;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer timer;
        const NextPaintedList painted("tbl_Rows", [&](QAbstractItemView& view) {
            opened.OpenMs.push_back(Ms(timer));
            SheetTypist typist(static_cast<SheetView&>(view), opened.LongestBlockMs);
            if (round % 2 == 1) typist.ChooseRecordedMonth(); // whose records are in the rows already
            typist.EnterRows();
            view.window()->close();
        });
        timer.start();
        ShowMonthSheet(app, nullptr);
    }
    return opened;
}

/// Reads the verdict as the main window does.
Opened StepVerdict(AppContext& app) {
    Opened opened;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer whole;
        whole.start();
        VerdictReader verdict;
        bool isDone = !verdict.Begin(app);
        while (!isDone)
            opened.LongestBlockMs =
                std::max(opened.LongestBlockMs, MsOf([&] { isDone = verdict.Step(app); }));
        opened.OpenMs.push_back(Ms(whole));
    }
    return opened;
}

void Print(const char* name, const Opened& opened) {
    const double median = Median(opened.OpenMs);
    std::printf("%-20s %22.0f %7g %s %24.1f %7g %s\n", name, median, MostMsToOpen,
                median <= MostMsToOpen ? "   " : "<--", opened.LongestBlockMs, MostMsBlocked,
                opened.LongestBlockMs <= MostMsBlocked ? "" : "<-- above its target");
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "mact_window_bench FOLDER\n");
        return 2;
    }
    QApplication::setStyle(new ProgramStyle);
    BenchShop shop(std::filesystem::path(argv[1]) / "all", MostRecords);
    frmMain window(shop.App());
    window.show();
    QApplication::processEvents();

    std::printf("%-20s %22s %7s     %24s %7s\n", "window at the limit", "click to painted, ms", "target",
                "longest block, ms", "target");
    Print("materials", OpenAndType(window, "cmd_Material"));
    Print("usage", OpenAndType(window, "cmd_Usage"));
    Print("overview", OpenOverviewAndStep(window));
    Print("verdict", StepVerdict(shop.App()));
    BenchShop monthShop(std::filesystem::path(argv[1]) / "month", MostRecords);
    UseAllInLastMonth(monthShop);
    Print("month sheet", OpenSheetAndType(monthShop.App()));
    return 0;
}
