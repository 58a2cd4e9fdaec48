#pragma once

#include "base/services.h"

class QtClock : public Clock {
public:
    std::chrono::year_month CurrentMonth() override;
};
