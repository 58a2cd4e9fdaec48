#include "cli/terminal_guard.h"
#include "tests/cli/cli_shop.h"

#include <QProcess>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

namespace mact {
namespace {

/// A terminal that keeps what it is to show. What is written to it is less than it can hold.
class Terminal {
public:
    Terminal() : m_master(::posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_EQ(::grantpt(m_master), 0);
        EXPECT_EQ(::unlockpt(m_master), 0);
        m_name = ::ptsname(m_master);
        m_kept = ::open(m_name.c_str(), O_RDWR | O_NOCTTY); // or what was written could be lost
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        ::close(m_kept);
        ::close(m_master);
    }
    const std::string& Name() const { return m_name; }
    /// What has been written since. The terminal adds a CR to each line end, which is left out.
    std::string Shown() const {
        ::fcntl(m_master, F_SETFL, O_NONBLOCK);
        std::string shown;
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = ::read(m_master, bytes.data(), bytes.size())) > 0;)
            shown.append(bytes.data(), static_cast<std::size_t>(count));
        for (std::size_t end = 0; (end = shown.find("\r\n", end)) != std::string::npos;)
            shown.erase(end, 1);
        return shown;
    }

private:
    int m_master;
    int m_kept = -1;
    std::string m_name;
};

class TerminalTest : public CliShop {
protected:
    /// What a terminal is sent as output and as errors.
    std::string OnTerminal(const std::string& program, const QStringList& arguments) const {
        const Terminal terminal;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", QString::fromStdString(PathText(Config)));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QString::fromStdString(terminal.Name()));
        process.setStandardErrorFile(QString::fromStdString(terminal.Name()), QIODevice::Append);
        process.start(QString::fromStdString(program), arguments);
        EXPECT_TRUE(process.waitForFinished());
        return terminal.Shown();
    }
    std::string Shown(QStringList arguments) const {
        arguments.prepend(QString::fromStdString(PathText(Folder)));
        arguments.prepend("--folder");
        return OnTerminal(MACT_CLI_PROGRAM, arguments);
    }
    /// A shop in a folder with an escape sequence in its name, and one in a material's name.
    void AddHostileShop() {
        const std::filesystem::path hostile = Temporary.Path() / "p\x1B[2J\xC2\x9Bx";
        std::filesystem::rename(Folder, hostile);
        Folder = hostile;
        Data = Folder / "data";
        AddShop();
        ASSERT_EQ(Run({"import-materials", "-"},
                      "\xC9\x1B]0;x\x07\x9D|d|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0\n")
                      .Status,
                  0);
        ASSERT_EQ(Run({"import-usage", "-"}, "\xC9\x1B]0;x\x07\x9D|3|2005|5|lbs\n").Status, 0);
    }
};

TEST_F(TerminalTest, NoCommandSendsAControlCharacter) {
    AddHostileShop();
    const QString ending = "3/2005";
    for (const QStringList& command : {
             QStringList{"report",                         "compliant"      },
             QStringList{"backup"                        },
             QStringList{"restore"                               },
             QStringList{"export-materials",                                "-"                 },
             QStringList{"export-usage",                                "-"},
             QStringList{"report",                      "compliant",                   "--output", "-"},
             QStringList{"report",                         "compliant",                                          "--json"},
             QStringList{"overview"                               },
             QStringList{"overview",                       "--csv"                 },
             QStringList{"trace",                          ending,       "content", "production resin, nonatomized"},
             QStringList{"status"},
             QStringList{"deleted"                               },
             QStringList{"check"                         },
             QStringList{"check",                        "--json"                                       },
             QStringList{"half-year",                        "1/2005"          },
             QStringList{"companies",                       "\x1B[2J"           },
             QStringList{"\x1B[2J"                               },
             QStringList{"--company",                         "\x1B[2J",                  "names"},
             QStringList{"report",                     "compliant",                                         "--ending", "\x1B[2J"},
             QStringList{"import-usage",                                "\x1B[2J\n"                 },
             QStringList{"restore",                                "\x1B[2J"}
    }) {
        const std::string shown = Shown(command);
        SCOPED_TRACE(command.join(' ').toStdString() + ": " + shown);
        for (const char character : shown)
            EXPECT_TRUE(character == '\n' || static_cast<unsigned char>(character) >= 0x20);
        EXPECT_EQ(shown.find('\x7F'), std::string::npos);
        EXPECT_EQ(shown.find("\xC2\x9B"), std::string::npos);
        EXPECT_EQ(shown.find("\xC2\x9D"), std::string::npos);
    }
}

TEST_F(TerminalTest, APathAndACellAreShownWithQuestionMarksAndInAFileAsTheyAre) {
    AddHostileShop();
    const std::string path = PathText(Folder / "report.htm") + '\n';
    EXPECT_EQ(Run({"report", "compliant"}).Output, path);
    const std::string shown = PathText(Temporary.Path() / "p?[2J?x" / "report.htm") + '\n';
    EXPECT_EQ(Shown({"report", "compliant"}), shown);
}

TEST_F(TerminalTest, AnExportIsShownAsText) {
    AddHostileShop();
    const std::string use = "|3|2005|5|lbs";
    EXPECT_NE(Run({"export-usage", "-"}).Output.find("\n\xC9\x1B]0;x\x07\x9D" + use + "\r\n"),
              std::string::npos);
    EXPECT_NE(Shown({"export-usage", "-"}).find("\n\u00C9?]0;x??" + use + "\nTotal Records Processed : 2\n"),
              std::string::npos);
}

TEST_F(TerminalTest, LettersArriveAsTheyAre) {
    AddCompany("B\u00E5ter \u20AC\u0160", "Dock 1");
    EXPECT_EQ(Shown({"companies"}), "1|B\u00E5ter \u20AC\u0160|Dock 1\n");
    EXPECT_EQ(Shown({"--help"}), Run({"--help"}).Output);
}

TEST(TerminalGuardTest, PassesOnLinesAndWhatIsFlushed) {
    std::ostringstream stream;
    {
        const TerminalGuard guard(stream);
        stream << "a\x1B[2J\r\nb\tc\rd";
        EXPECT_EQ(stream.str(), "a?[2J\n");
        stream << '\xC3';
        stream << '\xA9' << std::flush;
        stream.put('\x9B') << "\xC2\x9B\x7F\n\n\xC3";
    }
    EXPECT_EQ(stream.str(), "a?[2J\nb?c?d\xC3\xA9???\n\n?");
}

// A stream that cannot be written to, such as a terminal that is gone.
TEST(TerminalGuardTest, TellsTheStreamThatItsTerminalIsGone) {
    class Gone : public std::streambuf {};
    Gone gone;
    std::ostream stream(&gone);
    const TerminalGuard guard(stream);
    stream << "text" << std::flush;
    EXPECT_FALSE(stream);
}

} // namespace
} // namespace mact
