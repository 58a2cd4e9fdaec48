#pragma once

#include "base/services.h"

#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mact {

/// Platform services that remember what was asked of them and answer from a script.

class ScriptedPrompts : public MessagePrompts {
public:
    std::vector<Prompt> Shown;
    std::deque<PromptAnswer> Answers; ///< to the next questions; No if there is none left

    PromptAnswer Show(const Prompt& prompt) override {
        Shown.push_back(prompt);
        if (prompt.Buttons == PromptButtons::Ok) return PromptAnswer::Ok;
        if (Answers.empty()) return PromptAnswer::No;
        const PromptAnswer answer = Answers.front();
        Answers.pop_front();
        return answer;
    }
    /// The text of the last message; empty if there was none.
    std::string LastText() const { return Shown.empty() ? std::string{} : Shown.back().Text; }
};

class ScriptedSettings : public SettingsStore {
public:
    std::map<std::pair<std::string, std::string>, std::string> Values;
    std::optional<Failure> FailsWith{}; ///< what is written
    std::optional<Failure> FailsToReadWith{};

    Result<std::string> TryRead(std::string_view section, std::string_view key) override {
        if (FailsToReadWith) return *FailsToReadWith;
        const auto found = Values.find({std::string(section), std::string(key)});
        return found == Values.end() ? std::string{} : found->second;
    }
    Done Write(std::string_view section, std::string_view key, std::string_view value) override {
        if (FailsWith) return *FailsWith;
        Values[{std::string(section), std::string(key)}] = value;
        return Success();
    }
};

class ScriptedPrograms : public ProgramStarter {
public:
    std::vector<ProgramStart> Started;
    std::vector<std::filesystem::path> OpenedWithSystem{};
    std::optional<Failure> FailsWith{};

    Done Start(const ProgramStart& start) override {
        Started.push_back(start);
        if (FailsWith) return *FailsWith;
        return Success();
    }
    Done OpenWithSystem(const std::filesystem::path& file) override {
        OpenedWithSystem.push_back(file);
        if (FailsWith) return *FailsWith;
        return Success();
    }
};

class ScriptedDialogs : public FileDialogs {
public:
    std::optional<std::filesystem::path> Choice{}; ///< empty = the user cancels

    std::filesystem::path FolderShownFirst{};
    std::optional<FileKind> KindToSave{}; ///< that was last asked for

    std::optional<std::filesystem::path> ChooseFileToOpen(const std::string&, FileKind) override {
        return Choice;
    }
    std::optional<std::filesystem::path> ChooseFileToSave(const std::string&, FileKind kind) override {
        KindToSave = kind;
        return Choice;
    }
    std::optional<std::filesystem::path> ChooseFolder(const std::string&,
                                                      const std::filesystem::path& start) override {
        FolderShownFirst = start;
        return Choice;
    }
};

class ScriptedColours : public WindowColours {
public:
    int Followed = 0; ///< how often

    void FollowSetting() override { ++Followed; }
};

class ScriptedClock : public Clock {
public:
    std::chrono::year_month Month{std::chrono::year{2005}, std::chrono::March};
    std::chrono::year_month CurrentMonth() override { return Month; }
};
} // namespace mact
