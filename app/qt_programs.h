#pragma once

#include "base/services.h"

/// Programs that go on by themselves, also after this one has ended.
class QtPrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart& start) override;
};
