#include "KelvoProcess.h"

#include "Hand.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

QString KelvoProcess::program()
{
    return QStringLiteral(KELVO_PROGRAM);
}

KelvoProcess::KelvoProcess(SimulatedInternet &internet)
    : KelvoProcess(internet, program())
{
}

KelvoProcess::KelvoProcess(SimulatedInternet &internet, const QString &program)
    : ProxiedProcess(internet, program)
{
    setEnvironment(u"XDG_CONFIG_HOME"_s, configuration_.path());
    // The program is checked for leaks, the test is not: see CMakeLists.txt.
    setEnvironment(u"ASAN_OPTIONS"_s, u"detect_leaks=1"_s);
    setEnvironment(u"LSAN_OPTIONS"_s, u"print_suppressions=0:suppressions="_s + QStringLiteral(KELVO_LEAKS_OF_QT));
}

KelvoProcess::~KelvoProcess() = default;

void KelvoProcess::startAgain()
{
    SimulatedInternet internet;
    KelvoProcess another(internet);
    another.start();
    another.waitForEnd();
    another.endInSilence();
    QCOMPARE(internet.requests().size(), 0);
}

void KelvoProcess::endInSilence()
{
    const int status = stop();
    const auto said = output();
    if (!said.isEmpty()) {
        // The messages of QCOMPARE are cut; the report of a leak is long.
        qWarning().noquote() << said;
    }
    // LeakSanitizer itself crashes in one of some 500 ends on a busy machine. This says nothing about the program.
    if (said.startsWith("Tracer caught signal") && said.contains("LeakSanitizer has encountered a fatal error")) {
        return;
    }
    QCOMPARE(said, QByteArray());
    QCOMPARE(status, 0);
}

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

std::optional<Accessible> KelvoProcess::find(Accessible::Role role, const QString &name) const
{
    std::optional<Accessible> found;
    const auto isThere = [this, role, &name, &found] {
        const auto program = Accessible::program(processId());
        found = program ? program->find(role, name) : std::nullopt;
        return found.has_value();
    };
    return QTest::qWaitFor(isThere, 20'000) ? found : std::nullopt;
}

bool KelvoProcess::clickOn(Accessible::Role role, const QString &name) const
{
    const auto found = find(role, name);
    if (found) {
        Hand::click(found->geometry().center());
    }
    return found.has_value();
}

} // namespace kelvo
