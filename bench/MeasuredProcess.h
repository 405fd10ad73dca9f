#pragma once

#include <QMap>
#include <QString>

#include <chrono>

namespace kelvo {

/// The memory of a process as reported in /proc/PID/smaps_rollup (see proc(5)).
struct Memory
{
    double residentMegabytes;
    double proportionalMegabytes;
    double privateMegabytes;
    /// Without the pages of files. Those count as private or not depending on what other processes have loaded.
    double anonymousMegabytes;
};

/// The current memory of a process. All zero when there is no such process.
Memory memoryOf(qint64 processId);
/// The time that all threads of the process have spent on a processor so far.
std::chrono::nanoseconds cpuTimeOf(qint64 processId);
/// How often the threads of the process have woken up so far: each time, a thread then waits again, which is a voluntary
/// context switch.
long long wakeupsOf(qint64 processId);
int descriptorsOf(qint64 processId);
int threadsOf(qint64 processId);

// What the figures consist of, to find out what has grown.

/// The kilobytes of anonymous memory per file or kind of mapping: "[heap]", "[stack]", "[anonymous]".
QMap<QString, long long> anonymousMemoryByMapping(qint64 processId);
/// The number of descriptors per file or kind: "socket", "pipe", "anon_inode:[timerfd]".
QMap<QString, int> descriptorsByName(qint64 processId);

} // namespace kelvo
