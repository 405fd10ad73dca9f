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
/// How often the threads of the process have woken up so far: each time, a thread then waits again, which is a voluntary
/// context switch.
long long wakeupsOf(qint64 processId);
int threadsOf(qint64 processId);
int descriptorsOf(qint64 processId);

} // namespace kelvo
