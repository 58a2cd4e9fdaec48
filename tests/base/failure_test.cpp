#include "base/failure.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const Failure NoFile{"open the file", "x.txt", "No such file or directory"};

TEST(FailureTest, TheSentenceSaysWhatWasDoneToWhichFileAndWhyItFailed) {
    EXPECT_EQ(SentenceOf(NoFile), "Cannot open the file \"x.txt\": No such file or directory.");
}
TEST(FailureTest, WithoutAPathTheDoingNamesWhatItIsAbout) {
    EXPECT_EQ(SentenceOf({.Doing = "save the material \"GC-1\"", .Reason = "the filler is not a number"}),
              "Cannot save the material \"GC-1\": the filler is not a number.");
}
TEST(FailureTest, WithoutAReasonTheSentenceEndsEarlier) {
    EXPECT_EQ(SentenceOf({.Doing = "write to the standard output"}), "Cannot write to the standard output.");
}
TEST(FailureTest, AReasonAloneIsTheSentence) {
    EXPECT_EQ(SentenceOf({.Reason = "The disk is full"}), "The disk is full.");
    EXPECT_EQ(SentenceOf({.Reason = "Said by another program."}), "Said by another program.");
}
TEST(FailureTest, AFailureThatCausedAnotherStandsInItsMiddle) {
    EXPECT_EQ(SentenceOf({"write the file", "y.txt", ClauseOf(NoFile)}),
              "Cannot write the file \"y.txt\": cannot open the file \"x.txt\": No such file or directory.");
}
TEST(FailureTest, TwoFailuresAreTwoSentences) {
    EXPECT_EQ(
        SentenceOf(BothOf(NoFile, {.Doing = "write to the standard output"})),
        "Cannot open the file \"x.txt\": No such file or directory. Cannot write to the standard output.");
    EXPECT_EQ(SentenceOf(BothOf({.Doing = "save it"}, NoFile)),
              "Cannot save it. Cannot open the file \"x.txt\": No such file or directory.");
}

} // namespace
} // namespace mact
