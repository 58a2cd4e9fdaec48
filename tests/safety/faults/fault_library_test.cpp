#include "base/text.h"
#include "tests/safety/faults/fault_run.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>

namespace mact {
namespace {

/// The preloaded library itself, in the system's own programs.
class FaultLibrary : public testing::Test {
protected:
    TemporaryFolder Temporary;
    std::filesystem::path Folder = std::filesystem::canonical(Temporary.Path()) / "files";
    FaultRunner Runner{Folder, Temporary.Path() / "record"};

    FaultLibrary() {
        std::filesystem::create_directory(Folder);
        WriteContent(Folder / "text", "some text");
        WriteContent(Temporary.Path() / "beyond", "another text");
    }
    FaultRun Shell(const std::string& script, const CallFault* fault = nullptr) {
        return Runner.Run(
            {
                .Program = "/bin/sh",
                .Arguments = {"-c", "cd \"$0\" || exit 9\n" + script, PathText(Folder)},
                .SettingsFolder = Folder
        },
            fault);
    }
    static std::uint32_t Count(const FaultRun& run, CallKind kind) {
        return run.Counts.at(static_cast<std::size_t>(kind));
    }
};

TEST_F(FaultLibrary, CountsTheCallsOfAllProgramsOnTheFolderAlone) {
    const FaultRun reading = Shell("cat text ../beyond");
    EXPECT_EQ(reading.Output, "some textanother text");
    EXPECT_EQ(Count(reading, CallKind::Open), 1U);
    EXPECT_EQ(Count(reading, CallKind::Write), 0U); // to a pipe or a file elsewhere
    EXPECT_FALSE(reading.IsStruck);
    const FaultRun changing = Shell("mkdir a && mv text a/text && rm a/text");
    EXPECT_EQ(changing.Status, 0) << changing.Errors;
    EXPECT_EQ(Count(changing, CallKind::Mkdir), 1U);
    EXPECT_EQ(Count(changing, CallKind::Rename), 1U);
    EXPECT_EQ(Count(changing, CallKind::Unlink), 1U);
}

TEST_F(FaultLibrary, MakesOneCallFailAndSaysWhich) {
    const CallFault fault{.Kind = CallKind::Unlink, .Number = 2, .Error = EIO};
    const FaultRun run = Shell("echo 1 >a; echo 2 >b; echo 3 >c; rm a; rm b; rm c", &fault);
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(run.Errors.find("'b': Input/output error"), std::string::npos) << run.Errors;
    EXPECT_FALSE(std::filesystem::exists(Folder / "a"));
    EXPECT_TRUE(std::filesystem::exists(Folder / "b"));
    EXPECT_FALSE(std::filesystem::exists(Folder / "c"));
    EXPECT_TRUE(run.IsStruck);
    EXPECT_EQ(run.StruckProgram, "rm");
    EXPECT_EQ(run.StruckPath, PathText(Folder / "b"));
}

TEST_F(FaultLibrary, ShortensOneTransferOrFillsTheDisk) {
    // dd writes each block with one call, and what is left of it with another.
    const std::string script = "dd if=text of=copy bs=4 iflag=fullblock";
    const struct {
        CallFaultMode Mode;
        std::string Copy;
    } cases[] = {
        {CallFaultMode::Half, "some text"},
        {CallFaultMode::Byte, "some text"},
        {CallFaultMode::Full, "so"       },
    };
    ASSERT_EQ(Count(Shell(script), CallKind::Write), 3U);
    for (const auto& [mode, copy] : cases) {
        const CallFault fault{.Kind = CallKind::Write, .Number = 1, .Mode = mode, .Error = ENOSPC};
        const FaultRun run = Shell(script, &fault);
        EXPECT_TRUE(run.IsStruck);
        EXPECT_EQ(ContentOf(Folder / "copy"), copy) << run.Errors;
        EXPECT_EQ(run.Status == 0, mode != CallFaultMode::Full);
        EXPECT_EQ(Count(run, CallKind::Write), mode == CallFaultMode::Full ? 2U : 4U);
    }
}

} // namespace
} // namespace mact
