#pragma once

class QCoreApplication;

namespace kelvo {

/// Makes SIGTERM, SIGINT and SIGHUP quit the application's event loop at once and cleanly. Call it once, with the
/// application made.
void quitOnTerminationSignals(QCoreApplication &application);

} // namespace kelvo
