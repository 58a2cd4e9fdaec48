#include "cli/standard_streams.h"

#include "base/text.h"
#include "cli/terminal_guard.h"

#include <QString>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace mact {
namespace {

/// No line end is changed on the way.
void MakeBinary([[maybe_unused]] std::FILE* stream) {
#ifdef _WIN32
    _setmode(_fileno(stream), _O_BINARY);
#endif
}

/// Not QDir::tempPath(), which is "" if the folder that TMPDIR names does not exist.
QString TemporaryName(const char* pattern) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    // Without one, a name in a folder that does not exist: making it then fails.
    return QString::fromStdString(PathText((error ? "no temporary folder" : folder) / pattern));
}

constexpr const char* KeepInput = "keep the standard input in a temporary file";

} // namespace

void HoldStandardStreams() {
#ifndef _WIN32
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) == -1) // the lowest that is free, and so the one that open takes
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
#endif
}

StandardInput::StandardInput()
    : m_file(std::make_unique<QTemporaryFile>(TemporaryName("mact-cli XXXXXX standard input"))) {}
StandardInput::~StandardInput() = default;

Result<std::filesystem::path> StandardInput::Read() {
    if (!m_file->open()) return Failure{.Doing = KeepInput, .Reason = m_file->errorString().toStdString()};
    MakeBinary(stdin);
    std::array<char, 65536> bytes{};
    for (;;) {
        errno = 0;
        const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), stdin);
        const int error = errno;
        if (std::ferror(stdin) != 0)
            return Failure{.Doing = "read the standard input",
                           .Reason = std::generic_category().message(error)};
        if (count == 0) break;
        if (m_file->write(bytes.data(), static_cast<qint64>(count)) < 0)
            return Failure{.Doing = KeepInput, .Reason = m_file->errorString().toStdString()};
    }
    if (!m_file->flush()) return Failure{.Doing = KeepInput, .Reason = m_file->errorString().toStdString()};
    return PathFromUtf8(m_file->fileName().toStdString());
}

StandardOutput::StandardOutput() = default;
StandardOutput::~StandardOutput() = default;

Result<std::filesystem::path> StandardOutput::Path() {
    if (!m_folder) m_folder = std::make_unique<QTemporaryDir>(TemporaryName("mact-cli XXXXXX"));
    if (!m_folder->isValid())
        return Failure{.Doing = "create a temporary folder", .Reason = m_folder->errorString().toStdString()};
    return PathFromUtf8(m_folder->filePath("standard output").toStdString());
}

Done StandardOutput::Print(FileAccess& files) {
    const Result<std::filesystem::path> path = Path();
    if (!path) return path.error();
    if (!IsFileAt(*path)) return Success();
    const Result<std::string> content = ReadWholeFile(files, *path, UINT64_MAX); // it was in memory before
    m_folder.reset(); // now: a reader that has seen enough ends this program
    if (!content) return content.error();
    MakeBinary(stdout);
    std::cout << (IsStandardOutputTerminal() ? Utf8FromCodePage(*content) : *content);
    return Success();
}
} // namespace mact
