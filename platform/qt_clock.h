#pragma once

#include "base/services.h"

namespace mact {

class QtClock : public Clock {
public:
    std::chrono::year_month CurrentMonth() override;
};
} // namespace mact
