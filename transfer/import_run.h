#pragma once

#include "base/app_context.h"
#include "transfer/import_output.h"
#include "transfer/transfer.h"

#include <array>
#include <functional>
#include <optional>
#include <span>

namespace mact {

/// The files of an import, and what it does with a line.
struct ImportJob {
    std::filesystem::path Source;
    std::filesystem::path Log;
    std::filesystem::path DataFile;
    std::size_t SlotLength = 0;
    /// Called once before the first line, with the data file already locked.
    std::function<Done(RecordFile& dataFile)> Prepare;
    /// True if the line was rejected, false if it was stored.
    std::function<Result<bool>(const ImportedLine& line, ImportOutput& output)> ImportLine;
    /// Called at the end, with the data file still locked: the records from number `first` on are new.
    std::function<void(RecordFile& dataFile, std::int16_t first)> Imported{};
};

/// Runs the import with the data file locked. Sets the counts even if it fails: those reached by then.
Done RunImport(FileAccess& files, const ImportJob& job, const TransferWatcher& watcher, ImportCounts& counts);

/// The fields of a line, which are separated by "|"; empty unless there are exactly `Count`.
template <std::size_t Count>
std::optional<std::array<std::string_view, Count>> SplitFields(std::string_view line) {
    std::array<std::string_view, Count> fields;
    for (std::string_view& field : std::span(fields).first(Count - 1)) {
        const std::size_t end = line.find('|');
        if (end == std::string_view::npos) return std::nullopt;
        field = line.substr(0, end);
        line.remove_prefix(end + 1);
    }
    if (line.find('|') != std::string_view::npos) return std::nullopt;
    fields.back() = line;
    return fields;
}

/// The records from number `first` on, for the history.
template <class Record, class... Types>
std::vector<StoredRecord<Record>> NewRecords(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                             std::int16_t first) {
    std::vector<StoredRecord<Record>> records;
    records.reserve(static_cast<std::size_t>(file.Count() - first) + 1);
    const Done read = file.ForEachSlot([&](std::int16_t number, std::string_view slot) {
        if (number < first) return true;
        StoredRecord<Record>& stored = records.emplace_back();
        Unpack(layout, slot, stored.Record);
        stored.IsNew = true;
        return true;
    });
    if (!read) records.clear(); // it then cannot be taken back
    return records;
}
/// What an import is called when it is taken back: import "usage.txt" (187 records).
std::string NameOfImport(const std::filesystem::path& source, std::size_t records);

/// Splits the line into `checked.Fields` and calls `check`, which returns the first error's message or an
/// empty text. False if the line was rejected; it has then been logged.
template <class CheckedLine, class Check>
bool AcceptOrLog(const ImportedLine& line, ImportOutput& output, CheckedLine& checked, const Check& check) {
    const auto fields = SplitFields<std::tuple_size_v<decltype(checked.Fields)>>(line.Text);
    if (!fields) {
        output.LogInvalidFieldCount(line);
        return false;
    }
    checked.Fields = *fields;
    const std::string_view error = check(checked);
    if (!error.empty()) output.LogRejection(line, error);
    return error.empty();
}
} // namespace mact
