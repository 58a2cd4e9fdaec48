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

constexpr const char* ShownShortened =
    "(This log is long and is shown shortened. All of it is in the file usage_import_errors.txt.)\r\n\r\n";

TEST_F(ErrorLogs, ShowTheFirst4096BytesOfALongerLineAndSaySo) {
    const std::string longest(4096, 'x');
    WriteContent(UsageLogFile(), "a\r\n" + longest + "\r\nb\r\n");
    EXPECT_EQ(*ReadErrorLog(Files, UsageLogFile()), "a\r\n" + longest + "\r\nb\r\n");
    WriteContent(UsageLogFile(), "a\r\n" + longest + "y\r\nb\r\n");
    EXPECT_EQ(*ReadErrorLog(Files, UsageLogFile()), ShownShortened + ("a\r\n" + longest + "\r\nb\r\n"));
}

TEST_F(ErrorLogs, ShowTheFirst100000LinesAndSaySo) {
    std::string lines;
    for (int line = 0; line < 100'000; ++line)
        lines += "x\r\n";
    WriteContent(UsageLogFile(), lines);
    EXPECT_TRUE(*ReadErrorLog(Files, UsageLogFile()) == lines);
    WriteContent(UsageLogFile(), lines + "y\r\n");
    EXPECT_TRUE(*ReadErrorLog(Files, UsageLogFile()) == ShownShortened + lines);
}

TEST_F(ErrorLogs, ShowTheFirst8MegabytesAndSaySo) {
    std::string lines; // of 4,000 bytes each, of which 2,098 are more than 8 MiB
    for (int line = 0; line < 2'100; ++line)
        lines += std::string(3'998, 'x') + "\r\n";
    WriteContent(UsageLogFile(), lines);
    EXPECT_TRUE(*ReadErrorLog(Files, UsageLogFile()) ==
                ShownShortened + lines.substr(0, std::size_t{2'098} * 4'000));
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
