#include "tests/transfer/transfer_fixture.h"

namespace mact {
namespace {

class ErrorLogs : public TransferTest {};

TEST_F(ErrorLogs, LieInTheProgramFolder) {
    EXPECT_EQ(ImportErrorLog(App, TransferModule::Materials), MaterialLogFile());
    EXPECT_EQ(ImportErrorLog(App, TransferModule::Usage), UsageLogFile());
    EXPECT_EQ(UsageExportErrorLog(App), ExportLogFile());
}

TEST_F(ErrorLogs, AreReadAsLinesEndedByCrLf) {
    WriteContent(UsageLogFile(), "a\r\n\r\nb\nc \xE9\x80");
    EXPECT_EQ(*ReadErrorLog(Files, UsageLogFile()), "a\r\n\r\nb\r\nc \xE9\x80\r\n");
}

TEST_F(ErrorLogs, AnEmptyOneHasNoLine) {
    WriteContent(UsageLogFile(), "");
    EXPECT_EQ(*ReadErrorLog(Files, UsageLogFile()), "");
}

TEST_F(ErrorLogs, AMissingOneIsOneFailure) {
    EXPECT_TRUE(ShowFailure(App, ReadErrorLog(Files, UsageLogFile())));
    ExpectOneFailure("usage_import_errors.txt");
}

TEST_F(ErrorLogs, OneThatCannotBeReadToItsEndIsAFailure) {
    WriteContent(UsageLogFile(), "a\r\nb\r\n");
    FaultyFiles.Limits[UsageLogFile()] = {.LongestFile = 4};
    EXPECT_TRUE(ShowFailure(App, ReadErrorLog(Faulty.Files, UsageLogFile())));
    ExpectOneFailure("The disk is damaged.");
}

TEST(TransferSummary, OfAnImportHasThreeLines) {
    EXPECT_EQ(ImportSummary(1200, 3),
              "Total Records Processed : 1200\r\nSucessful Imports : 1197\r\nErrors : 3");
}

TEST(TransferSummary, OfAnExportHasThreeLines) {
    EXPECT_EQ(ExportSummary(12, 3), "Total Records Processed : 12\r\nSucessful Exports : 9\r\nErrors : 3");
}

TEST(TransferSummary, OfAnExportWithoutErrorCountEndsBehindItsLabel) {
    EXPECT_EQ(ExportSummary(12, {}), "Total Records Processed : 12\r\nSucessful Exports : 12\r\nErrors : ");
}

} // namespace
} // namespace mact
