#include "app/frm_main.h"
#include "benchmarks/bench_shop.h"
#include "dialogs/message_icons.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace mact;

// mact_window_bench FOLDER
//
// Opens both lists of the shop that mact_bench made in FOLDER/all and types in them. Prints how long it takes
// from the click to the painted window, and the longest time for which a key blocks the window.

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

/// Calls `then` once the list in the next window to open has been painted.
class NextPaintedList : public QObject {
public:
    explicit NextPaintedList(std::function<void(QListWidget&)> then) : m_then(std::move(then)) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && !m_isPainted) {
            auto* list = qobject_cast<QListWidget*>(watched->parent());
            if (list && list->viewport() == watched && list->objectName() == QLatin1String("lst_Main")) {
                m_isPainted = true;
                // After all paint events of the window.
                QTimer::singleShot(0, list, [this, list] { m_then(*list); });
            }
        }
        return false;
    }

private:
    std::function<void(QListWidget&)> m_then;
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
        const NextPaintedList painted([&](QListWidget& list) {
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
    QApplication::setStyle(new StyleWithMessageIcons);
    BenchShop shop(std::filesystem::path(argv[1]) / "all", MostRecords);
    frmMain window(shop.App());
    window.show();
    QApplication::processEvents();

    std::printf("%-20s %22s %7s     %24s %7s\n", "list at the limit", "click to painted, ms", "target",
                "longest block, ms", "target");
    Print("materials", OpenAndType(window, "cmd_Material"));
    Print("usage", OpenAndType(window, "cmd_Usage"));
    return 0;
}
