#pragma once

#include "base/services.h"

/// Platform services for a start without windows: nothing is asked and no other program is started.

/// Failures and refusals go to the standard error output, one line each. Questions are answered as the
/// command line says. Other messages say what a window would; they are left out.
class ConsolePrompts : public MessagePrompts {
public:
    PromptAnswer Show(const Prompt& prompt) override;

    bool AnswersYes = false;
    bool HasShownFailure() const { return m_hasShownFailure; }

private:
    bool m_hasShownFailure = false;
};

/// Reports are not opened in a browser.
class NoPrograms : public ProgramStarter {
public:
    Done Start(const ProgramStart&) override { return Success(); }
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
