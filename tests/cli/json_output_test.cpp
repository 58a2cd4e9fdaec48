#include "tests/cli/cli_shop.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace mact {
namespace {

/// Qt's parser, which takes only JSON in UTF-8.
QJsonDocument Parsed(const std::string& json) {
    QJsonParseError error{};
    QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << '\n' << json;
    return document;
}

class JsonOutput : public CliShop {};

TEST_F(JsonOutput, ListsTheCompaniesAndSaysWhichIsCurrent) {
    EXPECT_EQ(Run({"companies", "--json"}).Output, "[]\n");
    AddCompany("Acme \"A\" \\ Co", "Dock|1");
    AddCompany(" B\u00E5ter\x1B[2J\n", "Pier \u20AC\xC2\x9D");
    ASSERT_EQ(Run({"select-company", "2"}).Status, 0);
    const ProgramRun run = Run({"companies", "--json"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "[\n"
                          "  {\"id\": 1, \"name\": \"Acme \\\"A\\\" \\\\ Co\", \"location\": \"Dock|1\", "
                          "\"current\": false},\n"
                          "  {\"id\": 2, \"name\": \"B\u00E5ter\\u001b[2J\\u000a\", \"location\": "
                          "\"Pier \u20AC\\u009d\", \"current\": true}\n"
                          "]\n");
    const QJsonArray companies = Parsed(run.Output).array();
    ASSERT_EQ(companies.size(), 2);
    EXPECT_EQ(companies[0].toObject()["name"].toString().toStdString(), "Acme \"A\" \\ Co");
    EXPECT_EQ(companies[1].toObject()["name"].toString().toStdString(), "B\u00E5ter\x1B[2J\n");
    EXPECT_EQ(Parsed(Run({"companies", "--json", "--company", "1"}).Output)[0].toObject()["current"], true);
}

TEST_F(JsonOutput, OfCompaniesThatCannotBeReadIsEmpty) {
    AddShop();
    std::filesystem::remove(Data / "companies.talvor");
    std::filesystem::create_directory(Data / "companies.talvor");
    const ProgramRun run = Run({"companies", "--json"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
}

TEST_F(JsonOutput, NamesTheFileAndTheRecordOfAFinding) {
    AddShop();
    EXPECT_EQ(Run({"check", "--json"}).Output, "[]\n");
    EXPECT_EQ(Run({"check", "--json"}).Status, 0);
    ASSERT_EQ(Run({"import-usage", FileNamed("more.txt", "R-1|02|2005|1|lbs\r\n")}).Status, 0);
    WriteContent(Data / "1_additional.talvor", "MMA\r\n");
    const ProgramRun run = Run({"check", "--json"});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output,
              "[\n"
              "  {\"file\": \"1_usage.talvor\", \"record\": 2, \"finding\": \"its period \\\"02/2005\\\" is "
              "in no report; a month is written as in 3/2005\"},\n"
              "  {\"file\": \"1_additional.talvor\", \"record\": null, \"finding\": \"it does not hold six "
              "names\"}\n"
              "]\n");
    EXPECT_EQ(Parsed(run.Output).array().size(), 2);
}

TEST_F(JsonOutput, OfACheckHasTheFindingsBesideAFileThatCannotBeRead) {
    AddShop();
    WriteContent(Data / "1_additional.talvor", "MMA\r\n");
    std::filesystem::remove(Data / "1_usage.talvor");
    std::filesystem::create_directory(Data / "1_usage.talvor");
    const ProgramRun run = Run({"check", "--json"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(Parsed(run.Output).array().size(), 1);
    EXPECT_EQ(run.Errors,
              "Cannot open the file \"" + PathText(Data / "1_usage.talvor") + "\": Is a directory.\n");
}

TEST_F(JsonOutput, OfAStatusIsValidWithControlCharactersInAName) {
    AddCompany("A\x1B[2J\x7F\xC2\x9D", "Dock 1");
    const ProgramRun run = Run({"status", "--json", "--company", "1"});
    const QJsonObject status = Parsed(run.Output)[0].toObject();
    EXPECT_EQ(status["name"].toString().toStdString(), "A\x1B[2J\x7F\xC2\x9D");
    EXPECT_TRUE(status["month"].isNull());
    EXPECT_EQ(run.Output.find('\x1B'), std::string::npos);
    EXPECT_EQ(run.Output.find("\xC2\x9D"), std::string::npos);
}

TEST_F(JsonOutput, HasAReplacementForAFolderNameThatIsNoUtf8) {
    const std::filesystem::path strange = Temporary.Path() / "b\xFFg";
    std::filesystem::create_directory(strange);
    std::filesystem::rename(Folder, strange / "program");
    // Qt gives arguments as Unicode, so the name is reached by a shell.
    const std::string script = "cd \"$1\"/b*g && \"$2\" --folder program check --json";
    const ProgramRun run =
        RunProgram("/bin/sh", {"-c", script, "sh", PathText(Temporary.Path()), MACT_CLI_PROGRAM}, Config);
    EXPECT_EQ(run.Status, 4) << run.Errors;
    const std::string finding = Parsed(run.Output)[0].toObject()["finding"].toString().toStdString();
    EXPECT_NE(finding.find("b\xEF\xBF\xBDg"), std::string::npos) << run.Output;
}

} // namespace
} // namespace mact
