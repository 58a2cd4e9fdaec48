#include "tests/safety/faults/fault_run.h"

#include "base/text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace mact {
namespace {

FaultRecord* Map(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0 || ::ftruncate(descriptor, sizeof(FaultRecord)) != 0) std::abort();
    void* const memory =
        ::mmap(nullptr, sizeof(FaultRecord), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    ::close(descriptor);
    if (memory == MAP_FAILED) std::abort();
    return static_cast<FaultRecord*>(memory);
}

std::string Variable(const char* name, const std::string& value) {
    return std::string(name) + '=' + value;
}

std::string NameOf(CallKind kind) {
    return std::string(CallKindNames.at(static_cast<std::size_t>(kind)));
}
std::string NameOf(CallFaultMode mode) {
    return std::string(CallFaultModeNames.at(static_cast<std::size_t>(mode)));
}

} // namespace

std::string TextOf(const CallFault& fault) {
    std::string text = NameOf(fault.Kind) + ' ' + std::to_string(fault.Number) + ": ";
    if (fault.Mode != CallFaultMode::Error) text += NameOf(fault.Mode);
    if (fault.Mode == CallFaultMode::Full) text += ", then ";
    if (fault.Error != 0) text += ::strerrorname_np(fault.Error);
    return text;
}

bool IsHarmless(const CallFault& fault) {
    if (fault.Mode == CallFaultMode::Error) return fault.Error == EINTR;
    return fault.Mode != CallFaultMode::Full;
}

FaultRunner::FaultRunner(std::filesystem::path folder, std::filesystem::path record)
    : m_folder(std::move(folder)), m_recordFile(std::move(record)), m_record(Map(m_recordFile)) {}

FaultRunner::~FaultRunner() {
    ::munmap(m_record, sizeof(FaultRecord));
}

FaultRun FaultRunner::Run(ChildStart start, const CallFault* fault) {
    constexpr unsigned longestTime = 60; // seconds
    new (m_record) FaultRecord{};
    start.LongestTime = longestTime;
    const std::vector<std::string> variables = {
        Variable("LD_PRELOAD", MACT_FAULT_LIBRARY), Variable(FaultFolderVariable, PathText(m_folder)),
        Variable(FaultRecordVariable, PathText(m_recordFile)),
        // Only for programs built with the sanitizer, which wants to come first.
        Variable("ASAN_OPTIONS", "verify_asan_link_order=0")};
    start.Environment.insert(start.Environment.end(), variables.begin(), variables.end());
    if (fault) {
        start.Environment.push_back(Variable(CallKindVariable, NameOf(fault->Kind)));
        start.Environment.push_back(Variable(FaultNumberVariable, std::to_string(fault->Number)));
        start.Environment.push_back(Variable(FaultModeVariable, NameOf(fault->Mode)));
        start.Environment.push_back(Variable(FaultErrorVariable, std::to_string(fault->Error)));
    }
    ChildProgram program(start);
    FaultRun run;
    run.Status = program.WaitForAll();
    run.Output = program.Output();
    run.Errors = program.Errors();
    for (std::size_t kind = 0; kind < run.Counts.size(); ++kind)
        run.Counts[kind] = m_record->Counts[kind];
    run.IsStruck = m_record->IsStruck != 0;
    run.StruckProgram = m_record->Program.data();
    run.StruckCall = m_record->Call.data();
    run.StruckPath = m_record->Path.data();
    return run;
}
} // namespace mact
