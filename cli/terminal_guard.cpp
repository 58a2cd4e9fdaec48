#include "cli/terminal_guard.h"

#include "base/text.h"

#ifdef _WIN32
#include <io.h>

#include <cstdio>
#else
#include <unistd.h>
#endif

namespace mact {
namespace {

std::string Harmless(std::string_view line) {
    std::string text;
    text.reserve(line.size());
    while (!line.empty()) {
        const DecodedCharacter decoded = DecodeUtf8(line);
        const bool isShown = !decoded.IsMalformed && !IsControl(decoded.Character);
        text += isShown ? line.substr(0, decoded.Length) : std::string_view("?");
        line.remove_prefix(decoded.Length);
    }
    return text;
}

} // namespace

TerminalGuard::~TerminalGuard() {
    TerminalGuard::sync();
    m_stream.rdbuf(m_terminal);
}

TerminalGuard::int_type TerminalGuard::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char written = traits_type::to_char_type(character);
    return xsputn(&written, 1) == 1 ? character : traits_type::eof();
}

std::streamsize TerminalGuard::xsputn(const char* text, std::streamsize count) {
    m_waiting.append(text, static_cast<std::size_t>(count));
    return PassLines() ? count : 0;
}

int TerminalGuard::sync() {
    const bool isPassed = Pass(m_waiting);
    m_waiting.clear();
    return isPassed && m_terminal->pubsync() == 0 ? 0 : -1;
}

bool TerminalGuard::PassLines() {
    std::size_t start = 0;
    bool isPassed = true;
    for (std::size_t end = m_waiting.find('\n'); end != std::string::npos;
         end = m_waiting.find('\n', start)) {
        std::string_view line(m_waiting.data() + start, end - start);
        if (line.ends_with('\r')) line.remove_suffix(1);
        isPassed = Pass(line) && m_terminal->sputc('\n') == '\n' && isPassed;
        start = end + 1;
    }
    m_waiting.erase(0, start);
    return isPassed;
}

bool TerminalGuard::Pass(std::string_view line) {
    const std::string text = Harmless(line);
    const auto length = static_cast<std::streamsize>(text.size());
    return m_terminal->sputn(text.data(), length) == length;
}

#ifdef _WIN32
bool IsStandardOutputTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}
bool IsStandardErrorTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}
#else
bool IsStandardOutputTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}
bool IsStandardErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}
#endif
} // namespace mact
