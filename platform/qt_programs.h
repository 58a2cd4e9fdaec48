#pragma once

#include "base/services.h"

namespace mact {

/// Programs that go on by themselves, also after this one has ended.
class QtPrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart& start) override;
#ifdef _WIN32
    Result<std::string> ScriptText(std::string_view utf8Text) override;
#endif
};
} // namespace mact
