#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string_view>

namespace mact {

/// What a test and the preloaded library (fault_library.cpp) tell each other.
///
/// The library counts the system calls, by kind, that a program and everything it starts make on files below
/// one folder, and makes one of them fail. It is told by these variables of the environment; the last four
/// may be left out, and then it only counts.
inline constexpr const char* FaultFolderVariable = "MACT_FAULT_FOLDER"; ///< absolute, without links
inline constexpr const char* FaultRecordVariable = "MACT_FAULT_RECORD"; ///< a file that holds a FaultRecord
inline constexpr const char* CallKindVariable = "MACT_FAULT_KIND";      ///< one of CallKindNames
inline constexpr const char* FaultNumberVariable = "MACT_FAULT_NUMBER"; ///< which call of its kind: 1, 2, ...
inline constexpr const char* FaultModeVariable = "MACT_FAULT_MODE";     ///< one of CallFaultModeNames
inline constexpr const char* FaultErrorVariable = "MACT_FAULT_ERROR";   ///< the errno, as a number

enum class CallKind : std::uint8_t { Open, Read, Write, Fsync, Rename, Unlink, Mkdir, Stat, Flock, Truncate };
inline constexpr std::array<std::string_view, 10> CallKindNames = {
    "open", "read", "write", "fsync", "rename", "unlink", "mkdir", "stat", "flock", "truncate"};

enum class CallFaultMode : std::uint8_t {
    Error, ///< the call does nothing and fails; the next one works
    Half,  ///< a read or write transfers half of the bytes, at least one
    Byte,  ///< it transfers one byte
    Full,  ///< a write transfers half of the bytes, and every later one fails
};
inline constexpr std::array<std::string_view, 4> CallFaultModeNames = {"error", "half", "byte", "full"};

/// The beginning of a file that every process maps.
struct FaultRecord {
    std::array<std::atomic<std::uint32_t>, CallKindNames.size()> Counts; ///< calls, by kind
    std::atomic<std::uint32_t> IsStruck;                                 ///< 1 = the call was reached
    // Of the call that was struck, ended by a zero byte:
    std::array<char, 64> Program;
    std::array<char, 32> Call;
    std::array<char, 1024> Path;
};
} // namespace mact
