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

/// A program without a window is run to its end; a status other than 0 is a failure, with what the program
/// wrote to its error output as the message. One with a window, the browser, is not started.
class ConsolePrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart& start) override;
#ifdef _WIN32
    Result<std::string> ScriptText(std::string_view utf8Text) override;
#endif
};

class NoFileDialogs : public FileDialogs {
public:
    std::optional<std::filesystem::path> ChooseFileToOpen(const std::string&, FileKind) override {
        return std::nullopt;
    }
    std::optional<std::filesystem::path> ChooseFileToSave(const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::filesystem::path> ChooseFolder(const std::string&,
                                                      const std::filesystem::path&) override {
        return std::nullopt;
    }
};
} // namespace mact
