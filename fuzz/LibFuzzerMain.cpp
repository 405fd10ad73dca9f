#include "FuzzTargets.h"

#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void report(QtMsgType, const QMessageLogContext &, const QString &message)
{
    std::fprintf(stderr, "No input causes a message, but this one does: %s\n", qPrintable(message));
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(report);
    return 0;
}

// An exception ends the program; libFuzzer then stores the input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    kelvo::KELVO_FUZZ_TARGET(QByteArrayView(data, static_cast<qsizetype>(size)));
    return 0;
}
