#pragma once

#include "base/files.h"

#include <filesystem>
#include <memory>
#include <string_view>

class QTemporaryDir;
class QTemporaryFile;

namespace mact {

/// The standard input and output in the place of a file: the FILE "-".

inline constexpr std::string_view StandardStream = "-";

/// Occupies the streams that the caller has closed, at which reading and writing then fail. Otherwise the
/// next file that is opened, such as a data file, would become a standard stream. To be called first.
void HoldStandardStreams();

/// All of the standard input, in a file that only the user may read and that is removed with this.
class StandardInput {
public:
    StandardInput();
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;
    ~StandardInput();

    /// Reads to the end of the input, and returns the path of the file.
    Result<std::filesystem::path> Read();

private:
    std::unique_ptr<QTemporaryFile> m_file; ///< where possible without a name until it is read to its end
};

/// A file that only the user may read, to be written and then printed. It is removed with this.
class StandardOutput {
public:
    StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput();

    /// Where to write to. Makes the folder for it.
    Result<std::filesystem::path> Path();
    /// Prints the file, which holds code-page text, byte for byte; on a terminal as UTF-8. A file that was
    /// never written prints nothing.
    Done Print(FileAccess& files);

private:
    std::unique_ptr<QTemporaryDir> m_folder; ///< null until it is asked for
};
} // namespace mact
