#include "tests/safety/faults/fault_judge.h"

#include "base/text.h"
#include "tests/safety/shop_operations.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <set>
#include <sstream>

namespace mact {
namespace {

constexpr int StatusFailed = 1;
constexpr const char* UndoSuffix = ".mact.undo";

using Problems = std::vector<std::string>;

/// What the next start tells of a backup that is not known to be complete.
bool IsNote(const std::string& name) {
    return name == "program/backup.mact.note";
}

/// The bytes of a file; empty if there is none.
std::optional<std::string> Content(const FileTree& files, const std::string& name) {
    const auto found = files.find(name);
    return found == files.end() ? std::nullopt : std::optional(found->second);
}

std::string NameIn(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}
bool IsRecordFile(const std::string& name) {
    return SlotLengthOf(NameIn(name)) != 0;
}
bool IsLog(const std::string& name) {
    return name.ends_with("_errors.txt");
}
bool IsSettings(const std::string& name) {
    return name.ends_with(".conf");
}
bool IsInBackupSet(const std::string& name) {
    return name.find("talvor_backupset_") != std::string::npos;
}
std::set<std::string> NamesIn(std::initializer_list<const FileTree*> trees) {
    std::set<std::string> names;
    for (const FileTree* tree : trees)
        for (const auto& [name, content] : *tree)
            names.insert(name);
    return names;
}

/// A record file without records is as good as none.
bool IsSame(const std::string& name, const std::optional<std::string>& left,
            const std::optional<std::string>& right) {
    if (left == right) return true;
    return IsRecordFile(name) && left.value_or("").empty() && right.value_or("").empty();
}

/// Some of the records that an import adds, each whole.
bool IsLeadingPart(const std::string& name, const std::string& part, const std::string& before,
                   const std::string& after) {
    return part.starts_with(before) && after.starts_with(part) &&
           part.size() % SlotLengthOf(NameIn(name)) == 0;
}

/// The settings in a settings file, as "section/key" and the value.
FileTree SettingsIn(const std::string& content) {
    FileTree settings;
    std::istringstream lines(content);
    std::string section;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        if (line.starts_with('['))
            section = line;
        else if (equals != std::string::npos)
            settings[section + '/' + line.substr(0, equals)] = line.substr(equals);
    }
    return settings;
}

/// Each setting is as before or as after; a task saves several, one by one.
bool IsEachOldOrNew(const std::string& present, const std::string& before, const std::string& after) {
    const FileTree settings = SettingsIn(present);
    const FileTree old = SettingsIn(before);
    const FileTree changed = SettingsIn(after);
    return std::ranges::all_of(NamesIn({&settings, &old, &changed}), [&](const std::string& name) {
        const auto value = Content(settings, name);
        return value == Content(old, name) || value == Content(changed, name);
    });
}

/// A log that could not be written to its end.
bool IsLeadingLines(const std::string& part, const std::string& whole) {
    return whole.starts_with(part) && (part.empty() || part.ends_with("\r\n"));
}

std::string Described(const FileTree& files, const std::string& name) {
    const auto content = Content(files, name);
    return content ? std::to_string(content->size()) + " bytes" : "missing";
}

/// Whether the file is read as it was before the change that an undo file beside it describes. The next
/// writer puts it back. Only a disk that stays full, or a fault at the undo file itself, keeps the task from
/// doing so.
bool IsUndone(const CallFault& fault, const ShopRun& run, const std::string& name) {
    const bool mayStay = fault.Mode == CallFaultMode::Full || run.StruckPath.ends_with(UndoSuffix);
    return mayStay && IsRecordFile(name) && run.Files.contains(name + UndoSuffix);
}
bool IsUndoFile(const CallFault& fault, const ShopRun& run, const std::string& name) {
    return name.ends_with(UndoSuffix) &&
           IsUndone(fault, run, name.substr(0, name.size() - std::string_view(UndoSuffix).size()));
}

/// The file is as between the halves of a task that has two.
bool IsBetween(const SoundRuns& sound, const std::string& name, const std::optional<std::string>& content) {
    return sound.Between && IsSame(name, content, Content(*sound.Between, name));
}

/// The file is as before or as after the task, or as between its halves.
bool IsOldOrNew(const SweptTask& task, const SoundRuns& sound, const std::string& name,
                const FileTree& files) {
    const auto before = Content(sound.Before, name);
    const auto after = Content(sound.Once.Files, name);
    const auto present = Content(files, name);
    if (IsSame(name, present, before) || IsSame(name, present, after) || IsBetween(sound, name, present))
        return true;
    // What a set holds that failed does not matter.
    if (IsInBackupSet(name) || (task.IsBackup && IsNote(name))) return true;
    if (!present || !after) return false;
    if (IsLog(name)) return IsLeadingLines(*present, *after);
    if (IsSettings(name)) return IsEachOldOrNew(*present, before.value_or(""), *after);
    const auto imported = sound.Between ? Content(*sound.Between, name) : after;
    return task.IsImport && IsRecordFile(name) && imported &&
           IsLeadingPart(name, *present, before.value_or(""), *imported);
}

/// Files that differ from those of a sound run. One that could not be removed may be left.
Problems Differences(const FileTree& expected, const FileTree& files, const std::string& unremoved) {
    Problems problems;
    for (const std::string& name : NamesIn({&expected, &files}))
        if (Content(expected, name) != Content(files, name) && name != unremoved)
            problems.push_back(name + " is not as without a fault: " + Described(files, name) + ", not " +
                               Described(expected, name));
    return problems;
}

/// Whether the call was one of the program itself, not of a program that it has started.
bool IsOwnCall(const SweptTask& task, const ShopRun& run) {
    return run.StruckProgram == NameIn(PathText(task.Start.Program));
}

/// Whether the text says what failed, where and why.
bool IsSentence(const std::string& line) {
    const std::size_t path = line.find(" \"/");
    const std::size_t reason = line.rfind("\": ");
    return line.starts_with("Cannot ") && line.ends_with('.') && path != std::string::npos &&
           reason != std::string::npos && path < reason && reason + 4 < line.size();
}

/// One line for one fault. A disk that stays full is more than one.
Problems JudgeMessage(const SweptTask& task, const CallFault& fault, const ShopRun& run) {
    const std::string& errors = run.Errors;
    if (!errors.ends_with('\n')) return {"no message"};
    const bool isOneFault = fault.Mode != CallFaultMode::Full;
    if (isOneFault && std::ranges::count(errors, '\n') != 1) return {"more than one message for one fault"};
    if (!IsOwnCall(task, run)) return {}; // the words of cp and the like are its own
    if (isOneFault && errors.find(". Cannot ") != std::string::npos) return {"two sentences for one fault"};
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);)
        if (!IsSentence(line)) return {"the message does not say what, where and why"};
    const std::string reason = std::generic_category().message(fault.Error);
    // Some reasons are in the program's own words.
    if (errors.starts_with("Cannot save the setting") || errors.starts_with("Cannot read the settings") ||
        fault.Error == ENOLCK)
        return {};
    if (errors.find(reason) == std::string::npos) return {"the message does not give the reason " + reason};
    return {};
}

/// The number behind a caption of an import's summary.
std::size_t NumberBehind(const std::string& text, const std::string& caption) {
    const std::size_t at = text.find(caption);
    return at == std::string::npos ? 0 : std::stoul(text.substr(at + caption.size()));
}

/// The records that an import claims to have stored are those in the file.
Problems JudgeCounts(const SoundRuns& sound, const ShopRun& run) {
    std::size_t stored = 0;
    for (const auto& [name, content] : run.Files)
        if (IsRecordFile(name) && !IsInBackupSet(name))
            stored += (content.size() - Content(sound.Before, name).value_or("").size()) /
                      SlotLengthOf(NameIn(name));
    const std::size_t told = NumberBehind(run.Output, "Sucessful Imports : ");
    if (told == stored) return {};
    return {"told of " + std::to_string(told) + " records and stored " + std::to_string(stored)};
}

/// The files of the data folder, but for temporary ones.
FileTree DataIn(const FileTree& files) {
    FileTree data;
    for (const auto& [name, content] : files)
        if (name.starts_with("program/data/") && !name.ends_with(".mact.tmp")) data[name] = content;
    return data;
}

/// Whether each file of the data folder is in the set that the program named.
bool IsSetComplete(const ShopRun& run) {
    const std::size_t at = run.Output.find("talvor_backupset_");
    if (at == std::string::npos) return false;
    const std::string set = run.Output.substr(at, run.Output.find_first_of("\n\"", at) - at);
    for (const auto& [name, content] : run.Files) {
        constexpr std::string_view data = "program/data/";
        if (!name.starts_with(data) || name == data) continue;
        if (Content(run.Files, "backups/" + set + '/' + NameIn(name)) != content) return false;
    }
    return true;
}

Problems JudgeFailed(const SweptTask& task, const SoundRuns& sound, const CallFault& fault,
                     const ShopRun& run, const std::string& unremoved) {
    Problems problems = JudgeMessage(task, fault, run);
    if (run.Status != StatusFailed) problems.push_back("status " + std::to_string(run.Status));
    for (const std::string& name : NamesIn({&sound.Before, &sound.Once.Files, &run.Files}))
        if (name != unremoved && !IsUndone(fault, run, name) && !IsUndoFile(fault, run, name) &&
            !IsOldOrNew(task, sound, name, run.Files))
            problems.push_back(name + " is neither as before nor as after: " + Described(run.Files, name) +
                               ", before " + Described(sound.Before, name) + ", after " +
                               Described(sound.Once.Files, name));
    if (task.IsImport) {
        for (std::string& problem : JudgeCounts(sound, run))
            problems.push_back(std::move(problem));
    } else if (task.IsBackup && !run.Output.empty()) { // it goes on when its number cannot be saved
        if (!IsSetComplete(run)) problems.emplace_back("names a set that is not complete");
    } else if (!task.PrintsWhatIsThere && !run.Output.empty() && run.Output == sound.Once.Output &&
               run.Files != sound.Once.Files) {
        problems.emplace_back("tells of success all the same");
    }
    return problems;
}

/// The path of the struck file within the shop, if it could not be removed.
std::string Unremoved(const CallFault& fault, const ShopRun& run) {
    constexpr std::string_view shop = "/shop/";
    const std::size_t at = run.StruckPath.find(shop);
    if (at == std::string::npos) return {};
    const std::string name = run.StruckPath.substr(at + shop.size());
    return fault.Kind == CallKind::Unlink || IsNote(name) ? name : "";
}

/// A text in the set's folder, beside what was copied, says what is missing.
bool IsToldInSet(const SoundRuns& sound, const ShopRun& run) {
    return std::ranges::any_of(run.Files, [&](const auto& file) {
        return IsInBackupSet(file.first) && !file.second.empty() && !sound.Once.Files.contains(file.first);
    });
}

/// Whether the program has to go on as if nothing had happened. Other programs treat interruptions as they
/// like; the standard library does not repeat what looks at a path, nor Qt all that it does for its own use.
bool MustWork(const SweptTask& task, const CallFault& fault, const ShopRun& run) {
    if (!IsHarmless(fault) || !IsOwnCall(task, run)) return false;
    const bool looksAtPath = fault.Kind == CallKind::Stat && run.StruckCall != "fstat";
    const bool listsFolder = fault.Kind == CallKind::Open && run.StruckCall == "openat";
    const bool isForQt = run.StruckPath.find("/shop/tmp/") != std::string::npos;
    return fault.Mode != CallFaultMode::Error || !(looksAtPath || listsFolder || isForQt);
}

/// The file is as after one or two sound runs, depending on what the faulty one had left of it.
bool IsSoundAfterNextRun(const SweptTask& task, const SoundRuns& sound, const std::string& name,
                         const FileTree& left, const FileTree& next) {
    if (task.IsBackup && (IsInBackupSet(name) || name.ends_with("/backup.bat"))) return true;
    if (task.IsBackup && IsNote(name)) return !next.contains(name);
    if (name.ends_with(UndoSuffix)) { // a void one stays until the file is written to
        const std::string ofFile = name.substr(0, name.size() - std::string_view(UndoSuffix).size());
        return !next.contains(name) || Content(next, ofFile) == Content(left, ofFile);
    }
    const auto present = Content(next, name);
    const bool isAsOnce = IsSame(name, present, Content(sound.Once.Files, name));
    const bool isAsTwice = IsSame(name, present, Content(sound.Twice.Files, name));
    if (IsLog(name)) return isAsOnce || isAsTwice || task.IsImport; // of an import, it depends on the records
    if (!IsRecordFile(name)) return isAsOnce || isAsTwice;
    if (left.contains(name + UndoSuffix)) // with one that holds, or one without
        return isAsOnce || isAsTwice || IsBetween(sound, name, present);
    if (IsSame(name, Content(left, name), Content(sound.Once.Files, name))) return isAsTwice;
    if (IsSame(name, Content(left, name), Content(sound.Before, name))) return isAsOnce;
    // The next run knows nothing of the first half of this one.
    if (IsBetween(sound, name, Content(left, name))) return present == Content(left, name);
    return task.IsImport && present.value_or("").starts_with(Content(left, name).value_or(""));
}

} // namespace

Problems JudgeFaultyRun(const SweptTask& task, const SoundRuns& sound, const CallFault& fault,
                        const ShopRun& run) {
    if (!run.IsStruck) return {"the call was not reached"};
    const std::string unremoved = Unremoved(fault, run);
    // What a copy says that outlasts the program is heard by nobody.
    const bool isTold = run.Status == StatusFailed || (!run.Errors.empty() && !task.IsCopiedLater);
    if (isTold && !MustWork(task, fault, run)) return JudgeFailed(task, sound, fault, run, unremoved);
    const bool isNotNoted = sound.Between && run.Output.ends_with(ThereIsNothingToUndo);
    Problems problems = Differences(isNotNoted ? *sound.Between : sound.Once.Files, run.Files, unremoved);
    // The next start compares the set with its note: it removes the note of a complete set.
    const bool isNoted = std::ranges::any_of(run.Files, [](const auto& file) { return IsNote(file.first); });
    const bool isToldLater = task.IsCopiedLater && (isNoted || IsToldInSet(sound, run));
    std::erase_if(problems, [&](const std::string& problem) {
        if (problem.find("/backup.mact.note ") != std::string::npos)
            return isToldLater || (task.IsBackup && IsSetComplete(run));
        return isToldLater && IsInBackupSet(problem);
    });
    if (run.Status != sound.Once.Status) problems.push_back("status " + std::to_string(run.Status));
    if (!run.Errors.empty() && !task.IsCopiedLater)
        problems.emplace_back("a message although there was no failure");
    if (run.Output != sound.Once.Output + (isNotNoted ? ThereIsNothingToUndo : ""))
        problems.emplace_back("another output than without a fault");
    return problems;
}

Problems JudgeRestore(const SoundRuns& sound, const ShopRun& run, const ShopRun& started,
                      const ShopRun& next) {
    if (!run.IsStruck) return {"the call was not reached"};
    Problems problems;
    const FileTree old = DataIn(sound.Before);
    const FileTree restored = DataIn(sound.Once.Files);
    const bool isDone = run.Status == sound.Once.Status && run.Errors.empty();
    if (isDone && DataIn(run.Files) != restored) problems.emplace_back("tells of success all the same");
    if (!isDone && run.Status != StatusFailed) problems.push_back("status " + std::to_string(run.Status));
    if (!isDone && !run.Errors.ends_with('\n')) problems.emplace_back("no message");
    if (started.Status != 0) problems.push_back("next start: " + started.Errors);
    const FileTree present = DataIn(started.Files);
    if (present != restored && (isDone || present != old))
        problems.emplace_back("the data is neither as before nor as in the set");
    for (const auto& [name, content] : started.Files) {
        if (name.find("/data.mact.") != std::string::npos || name.ends_with("/restore.mact.note"))
            problems.push_back(name + " is left over");
        if (IsInBackupSet(name) && sound.Before.contains(name) && sound.Before.at(name) != content)
            problems.push_back(name + " of a set has changed");
    }
    if (isDone && started.Files.contains("program/data.replaced/") &&
        run.Output.find("data.replaced") == std::string::npos)
        problems.emplace_back("a folder that stays is not named");
    if (next.Status != sound.Once.Status || !next.Errors.empty())
        problems.push_back("next run: status " + std::to_string(next.Status) + ' ' + next.Errors);
    if (DataIn(next.Files) != restored) problems.emplace_back("next run: nothing is restored");
    return problems;
}

Problems JudgeNextRun(const SweptTask& task, const SoundRuns& sound, const ShopRun& run,
                      const ShopRun& next) {
    Problems problems;
    // The number of a set may not have been saved: the next backup says that its folder exists, and goes on.
    const bool isSetAgain = task.IsBackup && next.Errors.starts_with("Cannot create the folder");
    const bool isAsOnce = next.Errors.empty() && next.Status == sound.Once.Status;
    const bool isAsTwice = next.Errors == sound.Twice.Errors && next.Status == sound.Twice.Status;
    if (!isAsOnce && !isAsTwice && !isSetAgain)
        problems.push_back("next run: status " + std::to_string(next.Status) + ' ' + next.Errors);
    if (task.IsBackup && !IsSetComplete(next)) problems.emplace_back("next run: the set is not complete");
    for (const std::string& name : NamesIn({&sound.Once.Files, &sound.Twice.Files, &run.Files, &next.Files}))
        if (!IsSoundAfterNextRun(task, sound, name, run.Files, next.Files))
            problems.push_back("next run: " + name + ": " + Described(next.Files, name) + " after " +
                               Described(run.Files, name));
    return problems;
}
} // namespace mact
