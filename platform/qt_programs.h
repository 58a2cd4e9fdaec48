#pragma once

#include "base/services.h"

namespace mact {

/// Starts programs that run on by themselves, even after this one has ended.
class QtPrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart& start) override;
    Done OpenWithSystem(const std::filesystem::path& file) override;
#ifdef _WIN32
    Result<std::string> ScriptText(std::string_view utf8Text) override;
#endif
};
} // namespace mact
