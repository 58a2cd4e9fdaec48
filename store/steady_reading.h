#pragma once

#include "base/files.h"
#include "store/record_file.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace mact {

/// Readers lock nothing, so a writer can change a file, or one after the other of several files, while they
/// are read. These routines notice that and read again, so that what was read stood in the files at one time.

/// How each of the files stands: a change makes a difference, even one that leads back to the same content.
using FileStates = std::vector<std::string>;
Result<FileStates> ReadStates(FileAccess& files, const std::vector<std::filesystem::path>& paths);

/// To be called after each try but the last; longer each time.
void WaitForWriter(int tries);
/// The Failure after the last one.
Failure InUse(const std::filesystem::path& path);

/// Calls `read`, which returns a Result, again if one of the files has changed meanwhile: three times at
/// most, then that is a Failure. `read` must start from nothing each time, and change nothing.
template <class Read>
auto ReadSteadily(FileAccess& files, const std::vector<std::filesystem::path>& paths, const Read& read)
    -> decltype(read()) {
    constexpr int mostTries = 3;
    for (int tries = 1;; ++tries) {
        const Result<FileStates> before = ReadStates(files, paths);
        if (!before) return before.error();
        auto result = read();
        if (!result && tries == mostTries) return result;
        const Result<FileStates> after = ReadStates(files, paths);
        if (!after) return result ? after.error() : result.error();
        const auto changed = std::ranges::mismatch(*before, *after).in1;
        if (changed == before->end()) return result;
        if (tries == mostTries) return InUse(paths[static_cast<std::size_t>(changed - before->begin())]);
        WaitForWriter(tries);
    }
}

/// The records of one file that pass, in file order. A missing file is created empty.
template <class Record, class... Types, class Test>
Result<std::vector<Record>> ReadRecordsSteadily(FileAccess& files, const std::filesystem::path& path,
                                                const RecordLayout<Record, Types...>& layout,
                                                const Test& passes) {
    return ReadSteadily(files, {path}, [&]() -> Result<std::vector<Record>> {
        Result<RecordFile> file = RecordFile::OpenForReading(files, path, layout.SlotLength());
        if (!file) return file.error();
        return ReadRecords(*file, layout, passes);
    });
}
} // namespace mact
