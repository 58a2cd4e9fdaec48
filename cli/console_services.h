#pragma once

#include "base/services.h"

namespace mact {

/// Platform services for a run without windows: nothing is asked and no window is opened.

/// Failures and refusals go to the standard error output, one line each. Questions are answered as the
/// command line says. Information is left out: the commands print their own.
class ConsolePrompts : public MessagePrompts {
public:
    PromptAnswer Show(const Prompt& prompt) override;

    bool AnswersYes = false;
    bool HasShownFailure() const { return m_hasShownFailure; }

private:
    bool m_hasShownFailure = false;
};

/// Starts nothing: the browser is not wanted, and a backup copies the files itself.
class ConsolePrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart&) override { return Success(); }
    Done OpenWithSystem(const std::filesystem::path&) override { return Success(); }
#ifdef _WIN32
    Result<std::string> ScriptText(std::string_view utf8Text) override;
#endif
};

class NoFileDialogs : public FileDialogs {
public:
    std::optional<std::filesystem::path> ChooseFileToOpen(const std::string&, FileKind) override {
        return std::nullopt;
    }
    std::optional<std::filesystem::path> ChooseFileToSave(const std::string&, FileKind) override {
        return std::nullopt;
    }
    std::optional<std::filesystem::path> ChooseFolder(const std::string&,
                                                      const std::filesystem::path&) override {
        return std::nullopt;
    }
};
} // namespace mact
