#include "tests/support/test_program.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>

namespace mact {
namespace {

std::filesystem::path NewFolder() {
    static std::atomic<unsigned> counter{0};
    const unsigned number = std::random_device{}();
    const std::string name =
        "mact test's \xC3\xA9 " + std::to_string(number) + "-" + std::to_string(++counter);
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / std::u8string(name.begin(), name.end());
    std::filesystem::create_directory(path);
    return path;
}

[[noreturn]] void Stop(const std::filesystem::path& path) {
    std::cerr << "The test cannot work with " << path << "\n";
    std::abort();
}

} // namespace

TemporaryFolder::TemporaryFolder() : m_path(NewFolder()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

TestProgram::TestProgram()
    : App{Prompts, Settings, Programs, Dialogs, Calendar, Files, Folder.Path() / "program"} {
    std::filesystem::create_directories(App.ProgramFolder / "data");
    App.CurrentCompanyId = 1;
}

std::vector<std::string> TestProgram::ShownTexts() const {
    std::vector<std::string> texts;
    texts.reserve(Prompts.Shown.size());
    for (const Prompt& prompt : Prompts.Shown)
        texts.push_back(prompt.Text);
    return texts;
}

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) Stop(path);
    std::ostringstream content;
    content << file.rdbuf(); // many times faster than byte by byte
    return std::move(content).str();
}

std::string ReasonOf([[maybe_unused]] std::errc error, [[maybe_unused]] int windowsCode) {
#ifdef _WIN32
    return std::system_category().message(windowsCode);
#else
    return std::generic_category().message(static_cast<int>(error));
#endif
}

void WriteContent(const std::filesystem::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file) Stop(path);
}
} // namespace mact
