#include "app/backup_sets.h"

#include "app/backup.h"
#include "app/backup_copy.h"
#include "app/backup_note.h"
#include "base/interrupted.h"
#include "base/settings.h"
#include "base/text.h"
#include "base/text_lines.h"
#include "check/data_check.h"
#include "materials/material_record.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "store/record_file.h"
#include "usage/usage_record.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <set>
#include <system_error>
#include <tuple>

namespace mact {
namespace {

constexpr std::size_t MostLinesOfFailures = 20; // of incomplete.txt

std::string InQuotes(const std::filesystem::path& name) {
    return '"' + PathText(name) + '"';
}

void SortNewestFirst(std::vector<FoundSet>& sets) {
    std::ranges::sort(sets, [](const FoundSet& left, const FoundSet& right) {
        if (left.Newest != right.Newest) return left.Newest > right.Newest;
        // A later backup of the same data has a higher number.
        const std::string leftName = PathText(left.Folder.filename());
        const std::string rightName = PathText(right.Folder.filename());
        if (leftName.size() != rightName.size()) return leftName.size() > rightName.size();
        return std::tie(leftName, left.Folder) > std::tie(rightName, right.Folder);
    });
}

/// 0 for a file that does not grow record by record.
std::size_t SlotLengthOf(std::string_view name) {
    if (name == HapContentsName) return HapContentLayout.SlotLength();
    if (name == CompaniesName) return CompanyLayout.SlotLength();
    if (name.ends_with(MaterialsSuffix)) return MaterialLayout.SlotLength();
    if (name.ends_with(UsageSuffix)) return UsageLayout.SlotLength();
    return 0;
}

/// The names in the folder, in order.
Result<std::set<std::filesystem::path>> NamesIn(const std::filesystem::path& folder) {
    std::set<std::filesystem::path> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.insert(entry->path().filename());
    if (error) return Failure{"read the folder", folder, error.message()};
    return names;
}

/// What incomplete.txt says.
void AddWrittenDownFailures(FileAccess& files, const std::filesystem::path& path, SetContent& content) {
    content.Faults.push_back("Not every file could be copied into it.");
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return; // that it is there says enough
    TextLines lines(**file, {.Longest = 2000});
    for (std::size_t count = 0; count < MostLinesOfFailures; ++count) {
        const Result<std::optional<std::string_view>> line = lines.Next();
        if (!line || !*line) return;
        if (!Trim(**line).empty()) content.Faults.emplace_back(**line);
    }
}

/// Of an entry that is no file of the program's; links are not followed.
void AddForeignEntry(const std::filesystem::path& name, const std::filesystem::file_status& status,
                     SetContent& content) {
    if (std::filesystem::is_directory(status)) return; // no set has folders: it is the user's
    content.Faults.push_back(InQuotes(name) + (std::filesystem::is_symlink(status)
                                                   ? " is a link, which is not restored."
                                                   : " is not a file, and is not restored."));
}

/// A data file has a whole number of records once a change that was cut off is taken back.
void AddCutFile(FileAccess& files, const std::filesystem::path& path, SetContent& content) {
    const std::size_t slotLength = SlotLengthOf(PathText(path.filename()));
    if (slotLength == 0) return;
    const Result<RecordFile> file = RecordFile::OpenExisting(files, path, slotLength);
    if (!file)
        content.Faults.push_back(SentenceOf(file.error()));
    else if (file->Length() % slotLength != 0)
        content.Faults.push_back("The file " + InQuotes(path.filename()) + " ends within a record.");
}

void AddNotedFaults(AppContext& app, const std::filesystem::path& set, SetContent& content) {
    const std::optional<BackupNote> note = ReadBackupNote(app);
    std::error_code error;
    if (!note || !std::filesystem::equivalent(note->Set, set, error)) return;
    for (const std::string& sentence : WhatIsMissing(*note))
        content.Faults.push_back(sentence);
}

template <class Record, class... Types>
Result<std::size_t> CountLive(FileAccess& files, const std::filesystem::path& path,
                              const RecordLayout<Record, Types...>& layout) {
    Result<RecordFile> file = RecordFile::OpenExisting(files, path, layout.SlotLength());
    if (!file) return file.error();
    std::size_t count = 0;
    Record record;
    const Done read = file->ForEachSlot([&](std::int16_t, std::string_view slot) {
        Unpack(layout, slot, record);
        if (record.Active) ++count;
        return true;
    });
    if (!read) return read.error();
    return count;
}

/// A file that cannot be read counts nothing: the check says so.
void CountRecords(FileAccess& files, const std::filesystem::path& path, SetDescription& set) {
    const std::string name = PathText(path.filename());
    if (name.ends_with(MaterialsSuffix)) {
        const Result<std::size_t> count = CountLive(files, path, MaterialLayout);
        set.Materials += count ? *count : 0;
    } else if (name.ends_with(UsageSuffix)) {
        const Result<std::size_t> count = CountLive(files, path, UsageLayout);
        set.UsageRecords += count ? *count : 0;
    } else if (name == CompaniesName) {
        Result<RecordFile> file = RecordFile::OpenExisting(files, path, CompanyLayout.SlotLength());
        if (!file) return;
        const Result<std::vector<CompanyRecord>> companies =
            ReadRecords(*file, CompanyLayout, [](const CompanyRecord& company) { return company.Active; });
        if (!companies) return;
        for (const CompanyRecord& company : *companies)
            set.Companies.push_back(Utf8FromCodePage(Trim(company.CompanyName)));
    }
}

void AddFault(std::vector<std::string>& faults, const std::string& sentence) {
    if (std::ranges::find(faults, sentence) == faults.end()) faults.push_back(sentence);
}

} // namespace

std::optional<std::filesystem::file_time_type> NewestTimeIn(const std::filesystem::path& set) {
    std::optional<std::filesystem::file_time_type> newest;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(set, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ofEntry;
        if (!entry->is_regular_file(ofEntry) || entry->path().filename() == BackupFailuresName) continue;
        const auto time = entry->last_write_time(ofEntry);
        if (!ofEntry && (!newest || time > *newest)) newest = time;
    }
    return newest;
}

Result<std::vector<FoundSet>> FindBackupSetsIn(const std::filesystem::path& folder) {
    const Result<bool> isThere = LookForFolder(folder);
    if (!isThere) return isThere.error();
    std::vector<FoundSet> sets;
    if (!*isThere) return sets;
    const Result<std::set<std::filesystem::path>> names = NamesIn(folder);
    if (!names) return names.error();
    for (const std::filesystem::path& name : *names) {
        if (!PathText(name).starts_with(BackupSetPrefix)) continue;
        // One that cannot be looked at is listed too: its description says what is wrong.
        const Result<bool> isFolder = LookForFolder(folder / name);
        if (!isFolder || *isFolder) sets.push_back({folder / name, NewestTimeIn(folder / name)});
    }
    SortNewestFirst(sets);
    return sets;
}

Result<std::vector<FoundSet>> FindBackupSets(AppContext& app) {
    const Result<std::string> setting = app.Settings.TryRead(Settings::Backup, Settings::Path);
    if (!setting) return setting.error();
    Result<std::vector<FoundSet>> sets = FindBackupSetsIn(app.ProgramFolder);
    std::filesystem::path folder = PathFromUtf8(*setting);
    // Windows finds no folder whose path ends with a separator.
    if (!folder.has_filename()) folder = folder.parent_path();
    std::error_code ignored; // one that cannot be compared is another one
    if (!sets || setting->empty() || std::filesystem::equivalent(folder, app.ProgramFolder, ignored))
        return sets;
    const Result<std::vector<FoundSet>> more = FindBackupSetsIn(folder);
    if (!more) return more.error();
    sets->insert(sets->end(), more->begin(), more->end());
    SortNewestFirst(*sets);
    return sets;
}

Result<std::optional<std::filesystem::path>> SetMeantBy(AppContext& app, const std::string& utf8Text) {
    const Result<std::vector<FoundSet>> sets = FindBackupSets(app);
    if (!sets) return sets.error();
    for (const std::string& name : {utf8Text, std::string(BackupSetPrefix) + utf8Text})
        for (const FoundSet& set : *sets)
            if (PathText(set.Folder.filename()) == name) return std::optional(set.Folder);
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(PathFromUtf8(utf8Text), error);
    if (error || !IsFolderAt(folder)) return std::optional<std::filesystem::path>{};
    return std::optional(folder.lexically_normal());
}

Result<SetContent> ReadSetContent(AppContext& app, const std::filesystem::path& set) {
    const Result<std::set<std::filesystem::path>> names = NamesIn(set);
    if (!names) return names.error();
    SetContent content;
    for (const std::filesystem::path& name : *names) {
        std::error_code error;
        const std::filesystem::file_status status = WhileInterrupted(error, [&](std::error_code& given) {
            return std::filesystem::symlink_status(set / name, given);
        });
        // Not left out as something that is no file: a restore would do without it.
        if (status.type() == std::filesystem::file_type::none)
            return Failure{"look for the file", set / name, error.message()};
        if (name == BackupFailuresName)
            AddWrittenDownFailures(app.Files, set / name, content);
        else if (!std::filesystem::is_regular_file(status))
            AddForeignEntry(name, status, content);
        else if (IsUndoFile(name) && !names->contains(DataFileOf(name)))
            content.Faults.push_back("The data file of " + InQuotes(name) + " is missing.");
        else if (!IsTemporaryFile(name))
            content.Files.push_back(name);
    }
    AddNotedFaults(app, set, content);
    for (const std::filesystem::path& name : content.Files)
        AddCutFile(app.Files, set / name, content);
    if (content.Files.empty()) {
        content.Faults.emplace_back("It holds no files.");
        return content;
    }
    for (const std::string_view needed : {HapContentsName, CompaniesName})
        if (!names->contains(needed))
            AddFault(content.Faults, "The file \"" + std::string(needed) + "\" is missing.");
    return content;
}

SetDescription DescribeSet(AppContext& app, const std::filesystem::path& set) {
    SetDescription description{.Folder = set, .Newest = NewestTimeIn(set)};
    const Result<SetContent> content = ReadSetContent(app, set);
    if (!content) {
        description.Faults.push_back(SentenceOf(content.error()));
        return description;
    }
    description.Faults = content->Faults;
    std::set<std::string> names;
    for (const std::filesystem::path& name : content->Files) {
        if (IsUndoFile(name)) continue;
        names.insert(PathText(name));
        CountRecords(app.Files, set / name, description);
    }
    const std::vector<Failure> failures = CheckDataFiles(
        {app.Files, set, 0}, names, [&](const std::string& line) { description.Findings.push_back(line); });
    for (const Failure& failure : failures)
        AddFault(description.Faults, SentenceOf(failure));
    return description;
}

std::string DateText(const std::optional<std::filesystem::file_time_type>& time) {
    if (!time) return {};
    const auto inSystem = std::filesystem::file_time_type::clock::to_sys(*time);
    const std::time_t seconds = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(inSystem));
    const std::tm* local = std::localtime(&seconds); // NOLINT(concurrency-mt-unsafe): one thread
    if (!local) return {};
    char text[32]; // 16 characters until the year 9999
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", local);
    return {text, length};
}

std::string CompaniesText(const SetDescription& set) {
    std::string text;
    for (const std::string& name : set.Companies)
        text += (text.empty() ? "" : "; ") + name;
    return text;
}
} // namespace mact
