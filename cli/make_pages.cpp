// Writes the manual page and the completions of mact-cli below a folder, in the places where they are looked
// for below /usr/share. Run by the build.
#include "cli/command_description.h"
#include "cli/command_line.h"
#include "cli/completions.h"
#include "cli/man_page.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>

using namespace mact;

namespace {

bool WritePage(const std::filesystem::path& file, const std::string& content) {
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream) std::fprintf(stderr, "Cannot write %s\n", file.string().c_str());
    return !stream.fail();
}

} // namespace

int main(int argc, char* argv[]) try {
    if (argc != 2) return 2;
    const std::filesystem::path share = argv[1];
    CLI::App parser;
    CommandLine asked;
    DescribeCommands(parser, asked);
    const DescribedProgram program = DescribeProgram(parser);
    const bool isWritten =
        WritePage(share / "man" / "man1" / "mact-cli.1", ManPage(program)) &&
        WritePage(share / "bash-completion" / "completions" / "mact-cli", BashCompletion(program)) &&
        WritePage(share / "zsh" / "site-functions" / "_mact-cli", ZshCompletion(program)) &&
        WritePage(share / "fish" / "vendor_completions.d" / "mact-cli.fish", FishCompletion(program));
    return isWritten ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
