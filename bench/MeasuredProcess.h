#pragma once

#include <QtGlobal>

#include <chrono>

namespace kelvo {

/// What the kernel says of a process (proc(5)).
struct Memory
{
    double residentMegabytes;
    double proportionalMegabytes;
    double privateMegabytes;
};

/// Of this moment. Zeros when there is no such process.
Memory memoryOf(qint64 processId);
/// The time that all threads of the process have run so far.
std::chrono::nanoseconds cpuTimeOf(qint64 processId);
/// How often threads of the process have been put to run so far, by whatever.
long long wakeupsOf(qint64 processId);
int descriptorsOf(qint64 processId);

} // namespace kelvo
