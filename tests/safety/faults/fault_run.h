#pragma once

#include "tests/safety/child_program.h"
#include "tests/safety/faults/fault_record.h"

#include <array>
#include <string>

namespace mact {

/// What befalls one call of a program.
struct CallFault {
    CallKind Kind = CallKind::Open;
    std::uint32_t Number = 1; ///< of the call among those of its kind
    CallFaultMode Mode = CallFaultMode::Error;
    int Error = 0; ///< the errno
};
/// As in "the 3rd fsync: EIO".
std::string TextOf(const CallFault& fault);
/// Whether a program has to work as if there were no fault: a call that was interrupted, or that transferred
/// only a part of the bytes.
bool IsHarmless(const CallFault& fault);

/// How a program ended, and what its calls were.
struct FaultRun {
    int Status = -1; ///< -1 = it was killed, or took too long
    std::string Output{};
    std::string Errors{};
    std::array<std::uint32_t, CallKindNames.size()> Counts{}; ///< calls on files in the folder, by kind
    bool IsStruck = false;                                    ///< whether the call of the fault was reached
    std::string StruckProgram{};
    std::string StruckCall{};
    std::string StruckPath{};
};

/// Runs programs with faults in their calls on the files below one folder, which has no links on its way.
class FaultRunner {
public:
    /// `record` is a file beyond that folder.
    FaultRunner(std::filesystem::path folder, std::filesystem::path record);
    FaultRunner(const FaultRunner&) = delete;
    FaultRunner& operator=(const FaultRunner&) = delete;
    ~FaultRunner();

    /// Runs the program, and all that it starts, to the end. Without a fault the calls are only counted.
    FaultRun Run(ChildStart start, const CallFault* fault = nullptr);

private:
    std::filesystem::path m_folder;
    std::filesystem::path m_recordFile;
    FaultRecord* m_record;
};
} // namespace mact
