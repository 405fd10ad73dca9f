#pragma once

class QCoreApplication;

namespace kelvo {

/// Makes SIGTERM, SIGINT and SIGHUP exit the application's event loop, so that the process ends through its
/// destructors. A signal that is ignored at the call stays ignored. A second signal of the same kind kills the process.
/// Call it once, after the application object is made.
void quitOnTerminationSignals(QCoreApplication &application);

} // namespace kelvo
