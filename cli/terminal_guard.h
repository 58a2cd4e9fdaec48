#pragma once

#include <ostream>
#include <streambuf>
#include <string>

namespace mact {

/// Stands between a stream and a terminal for as long as it lives: what is written arrives with "?" for each
/// control character and each byte that is no UTF-8, which the terminal might obey instead of showing it.
/// Lines end with LF or CR LF.
class TerminalGuard : public std::streambuf {
public:
    explicit TerminalGuard(std::ostream& stream) : m_stream(stream), m_terminal(stream.rdbuf(this)) {}
    TerminalGuard(const TerminalGuard&) = delete;
    TerminalGuard& operator=(const TerminalGuard&) = delete;
    ~TerminalGuard() override;

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;

private:
    bool Pass(std::string_view line);
    /// What is complete.
    bool PassLines();

    std::ostream& m_stream;
    std::streambuf* m_terminal;
    std::string m_waiting{}; ///< the beginning of a line
};

bool IsStandardOutputTerminal();
bool IsStandardErrorTerminal();
} // namespace mact
