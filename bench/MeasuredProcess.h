#pragma once

#include <QtGlobal>

#include <chrono>

namespace kelvo {

/// The memory of a process as reported in /proc/PID/smaps_rollup (see proc(5)).
struct Memory
{
    double residentMegabytes;
    double proportionalMegabytes;
    double privateMegabytes;
};

/// The current memory of a process. All zero when there is no such process.
Memory memoryOf(qint64 processId);
/// The time that all threads of the process have spent on a processor so far.
std::chrono::nanoseconds cpuTimeOf(qint64 processId);
/// The number of context switches of all threads of the process so far. A process that never wakes up adds none.
long long wakeupsOf(qint64 processId);
int descriptorsOf(qint64 processId);

} // namespace kelvo
