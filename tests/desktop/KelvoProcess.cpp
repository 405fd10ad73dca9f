#include "KelvoProcess.h"

#include <QDir>
#include <QFile>

namespace kelvo {

using namespace Qt::StringLiterals;

KelvoProcess::KelvoProcess(SimulatedInternet &internet)
    : ProxiedProcess(internet, QStringLiteral(KELVO_PROGRAM))
{
    setEnvironment(u"XDG_CONFIG_HOME"_s, configuration_.path());
}

KelvoProcess::~KelvoProcess() = default;

void KelvoProcess::writeSettings(const QByteArray &content)
{
    QDir().mkpath(configuration_.filePath(u"Kelvo"_s));
    QFile file(settingsFile());
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("The settings file cannot be written");
    }
    file.write(content);
}

QString KelvoProcess::settingsFile() const
{
    return configuration_.filePath(u"Kelvo/Kelvo.conf"_s);
}

} // namespace kelvo
