#pragma once

#include <QTest>

// On a busy machine the desktop and the program, even more so with sanitizers, take longer than the 5 seconds for which Qt
// waits, and Qt 6.4 has no setting for it.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT(expression, 20'000)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expression, expected) QTRY_COMPARE_WITH_TIMEOUT(expression, expected, 20'000)
