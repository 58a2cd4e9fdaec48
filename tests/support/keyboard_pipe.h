#pragma once

#ifdef __linux__

#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <initializer_list>
#include <linux/input.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mact {

/// A keyboard for a Qt program that runs without a screen: a pipe that takes the place of the keyboard
/// device.
class KeyboardPipe {
public:
    /// The value of QT_QPA_GENERIC_PLUGINS for the program, whose current folder must be the one with the
    /// pipe. A device path must begin with /dev/, and only its ASCII characters get through.
    static constexpr const char* Plugin = "evdevkeyboard:/dev/../proc/self/cwd/keys";

    explicit KeyboardPipe(const std::filesystem::path& folder) {
        const std::filesystem::path path = folder / "keys";
        if (::mkfifo(path.c_str(), 0600) == 0) m_pipe = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    }
    KeyboardPipe(const KeyboardPipe&) = delete;
    KeyboardPipe& operator=(const KeyboardPipe&) = delete;
    ~KeyboardPipe() { ::close(m_pipe); }

    /// Presses the keys (KEY_LEFTALT and the like) one after another, then releases them. They are lost if
    /// nobody reads the pipe for so long that it fills up.
    void Press(std::initializer_list<std::uint16_t> keys) const {
        for (const std::uint16_t key : keys)
            Send(key, 1);
        for (const std::uint16_t key : keys)
            Send(key, 0);
    }

private:
    void Send(std::uint16_t key, std::int32_t value) const {
        input_event event{};
        event.type = EV_KEY;
        event.code = key;
        event.value = value;
        static_cast<void>(::write(m_pipe, &event, sizeof event) == 0);
    }

    int m_pipe = -1;
};
} // namespace mact

#endif
