#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

namespace mact {
namespace {

TEST(MissingLocks, AreSaidInOneSentenceAndNothingIsSaved) {
    const ProgramFolder folder;
    folder.Run({"add-company", "Acme", "Dock 1"});
    folder.Run({"select-company", "1"});
    folder.Run({"import-materials", folder.MaterialsToImport("Resin", 2)});
    const auto data = FilesIn(folder.Path() / "data");
    const std::pair<std::vector<std::string>, std::string> commands[] = {
        {{"add-company", "Beta", "Dock 2"},                         "Cannot lock the file \"" },
        {{"import-materials", folder.MaterialsToImport("more", 2)}, "Cannot lock the file \"" },
        {{"names", "a", "b", "c", "d", "e", "f"},                   "cannot lock the file \"" },
        {{"report", "compliant"},                                   "cannot lock the file \"" },
        {{"select-company", "1"},                                   "Cannot save the setting "},
    };
    for (const int error : {ENOLCK, EOPNOTSUPP, ENOSYS})
        for (const auto& [command, beginning] : commands) {
            SCOPED_TRACE(command.front());
            ChildStart start = folder.Start(command);
            start.LockError = error;
            ChildProgram program(start);
            EXPECT_EQ(program.Wait(), 1);
            const std::string said = program.Errors();
            EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
            EXPECT_NE(said.find(beginning), std::string::npos) << said;
            EXPECT_TRUE(
                said.ends_with("\": the file system of this folder has no locks, which keep two running "
                               "copies of the program from overwriting each other's work.\n"))
                << said;
            EXPECT_TRUE(FilesIn(folder.Path() / "data") == data);
        }
}

TEST(MissingLocks, LetEverythingBeRead) {
    const ProgramFolder folder;
    folder.Run({"add-company", "Acme", "Dock 1"});
    for (const char* command : {"companies", "check"}) {
        ChildStart start = folder.Start({command});
        start.LockError = ENOLCK;
        ChildProgram program(start);
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
    }
}

} // namespace
} // namespace mact
