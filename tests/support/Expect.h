#pragma once

#include <cstdio>

/// For a process of its own, in which no test framework runs: prints a condition that does not hold, and returns the exit
/// status 1.
#define EXPECT(condition)                                                                                              \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "line %d: not so: %s\n", __LINE__, #condition);                                       \
            return 1;                                                                                                  \
        }                                                                                                              \
    } while (false)
