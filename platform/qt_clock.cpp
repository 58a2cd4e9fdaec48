#include "platform/qt_clock.h"

#include <QDate>

namespace mact {

std::chrono::year_month QtClock::CurrentMonth() {
    const QDate today = QDate::currentDate();
    return std::chrono::year{today.year()} / std::chrono::month{static_cast<unsigned>(today.month())};
}
} // namespace mact
