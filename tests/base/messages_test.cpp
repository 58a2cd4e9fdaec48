#include "base/messages.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(FormErrorsTest, TwoFailedChecksStandBelowTheHeading) {
    TestProgram program;
    FormErrors errors;
    EXPECT_TRUE(errors.IsEmpty());
    errors.Add("- You must provide Material ID.");
    errors.Add("- Density should be a numeric value.");
    EXPECT_FALSE(errors.IsEmpty());
    ShowFormErrors(program.App, errors.Text());
    ASSERT_EQ(program.Prompts.Shown.size(), 1U);
    EXPECT_EQ(program.Prompts.Shown[0].Text, "Error(s) found while processing the form:\r\n"
                                             "\r\n"
                                             "- You must provide Material ID.\r\n"
                                             "- Density should be a numeric value.\r\n");
    EXPECT_EQ(program.Prompts.Shown[0].Kind, PromptKind::FormErrors);
    EXPECT_EQ(program.Prompts.Shown[0].Buttons, PromptButtons::Ok);
}

TEST(ShowErrorTest, ShowsTheSentence) {
    TestProgram program;
    ShowError(program.App, {"open the file", "x", "No such file or directory"});
    ASSERT_EQ(program.Prompts.Shown.size(), 1U);
    EXPECT_EQ(program.Prompts.Shown[0].Text, "Cannot open the file \"x\": No such file or directory.");
    EXPECT_EQ(program.Prompts.Shown[0].Kind, PromptKind::Failure);
    EXPECT_EQ(program.Prompts.Shown[0].Buttons, PromptButtons::Ok);
}

} // namespace
} // namespace mact
