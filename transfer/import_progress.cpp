#include "transfer/import_progress.h"

#include <QCoreApplication>

#include <algorithm>

namespace mact {
namespace {

constexpr qint64 PauseEvery = 30; ///< ms
constexpr qint64 Blink = 300;     ///< ms; a shorter import shows no progress

int Thousandths(const TransferProgress& progress) {
    const double all = static_cast<double>(std::max<std::uint64_t>(progress.BytesInAll, 1));
    return static_cast<int>(1000.0 * static_cast<double>(progress.BytesDone) / all);
}

} // namespace

ImportProgress::ImportProgress(Show show) : m_show(std::move(show)) {
    m_sinceStart.start();
}

bool ImportProgress::Watch(const TransferProgress& progress) {
    const qint64 now = m_sinceStart.elapsed();
    if (now - m_lastPause >= PauseEvery) {
        if (now >= Blink) m_show(progress.Lines, Thousandths(progress));
        QCoreApplication::processEvents(); // repaints; a click on Cancel calls Stop
        // Not `now`: if handling the events was slow, the import must still get its full turn.
        m_lastPause = m_sinceStart.elapsed();
    }
    return !m_isStopped;
}
} // namespace mact
