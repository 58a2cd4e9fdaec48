#pragma once

#include "base/text.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// A program folder, without data at first, on which mact-cli works.
class CliShop : public testing::Test {
protected:
    static constexpr const char* OneMaterial =
        "R-1|Resin, hand|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n";
    static constexpr const char* OneUse = "R-1|3|2005|120.5|lbs\r\n";

    TemporaryFolder Temporary;
    std::filesystem::path Folder = Temporary.Path() / "program";
    std::filesystem::path Data = Folder / "data";
    std::filesystem::path Config = Temporary.Path() / "settings";

    CliShop() {
        std::filesystem::create_directory(Folder);
        std::filesystem::create_directory(Config);
    }
    ProgramRun Run(std::vector<std::string> arguments, std::string_view input = {}) const {
        arguments.insert(arguments.begin(), {"--folder", PathText(Folder)});
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config, input);
    }
    std::string FileNamed(const std::string& name, std::string_view content) const {
        WriteContent(Temporary.Path() / name, content);
        return PathText(Temporary.Path() / name);
    }
    void AddCompany(const std::string& name, const std::string& location) const {
        ASSERT_EQ(Run({"add-company", name, location}).Status, 0);
    }
    /// A selected company with a material and its use in March 2005.
    void AddShop() const {
        AddCompany("Acme", "Dock 1");
        ASSERT_EQ(Run({"select-company", "1"}).Status, 0);
        ASSERT_EQ(Run({"import-materials", FileNamed("materials.txt", OneMaterial)}).Status, 0);
        ASSERT_EQ(Run({"import-usage", FileNamed("usage.txt", OneUse)}).Status, 0);
    }
    static auto CountLines(const std::string& text) { return std::ranges::count(text, '\n'); }
};
} // namespace mact
