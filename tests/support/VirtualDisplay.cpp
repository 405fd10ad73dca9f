#include "support/VirtualDisplay.h"

#include <sys/prctl.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace kelvo {

VirtualDisplay::VirtualDisplay(int depth)
{
    // It does not outlive a test that is killed.
    server_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    server_.setStandardErrorFile(QProcess::nullDevice());
    server_.start(
        u"Xvfb"_s,
        {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x%1"_s.arg(depth), u"-nolisten"_s, u"tcp"_s});
    if (!server_.waitForReadyRead(20000)) {
        qFatal("Xvfb does not start: %s", qPrintable(server_.errorString()));
    }
    name_ = u':' + QString::fromLatin1(server_.readLine().trimmed());
}

VirtualDisplay::~VirtualDisplay()
{
    server_.terminate();
    if (!server_.waitForFinished(5000)) {
        server_.kill();
        server_.waitForFinished();
    }
}

} // namespace kelvo
