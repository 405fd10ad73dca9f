#include "ProxiedProcess.h"

#include <QFile>
#include <QProcessEnvironment>

#include <csignal>

namespace kelvo {

using namespace Qt::StringLiterals;

ProxiedProcess::ProxiedProcess(SimulatedInternet &internet, QString program, QStringList arguments)
    : program_(std::move(program))
    , arguments_(std::move(arguments))
    , authority_(CertificateAuthority::make(SimulatedInternet::hosts()))
{
    internet.setCertificate(authority_->certificate(), authority_->privateKey());
    QFile::copy(authority_->authorityFile(), trusted_.filePath(u"authority.pem"_s));
    QProcess::execute(u"openssl"_s, {u"rehash"_s, trusted_.path()});

    process_.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    setEnvironment(u"http_proxy"_s, internet.proxyUrl().toString());
    setEnvironment(u"https_proxy"_s, internet.proxyUrl().toString());
    process_.setProcessChannelMode(QProcess::MergedChannels);
}

ProxiedProcess::~ProxiedProcess()
{
    if (isRunning()) {
        stop();
    }
}

void ProxiedProcess::setEnvironment(const QString &name, const QString &value)
{
    auto environment = process_.processEnvironment();
    environment.insert(name, value);
    process_.setProcessEnvironment(environment);
}

void ProxiedProcess::start()
{
    process_.start(QStringLiteral(KELVO_WITH_AUTHORITY), QStringList{trusted_.path(), program_} + arguments_);
    hasRun_ = process_.waitForStarted();
}

int ProxiedProcess::stop(int signal)
{
    // Without a process the id is 0, by which `kill` means the whole process group of this test.
    if (const auto id = static_cast<pid_t>(process_.processId()); id > 0) {
        ::kill(id, signal);
    }
    return waitForEnd();
}

int ProxiedProcess::waitForEnd()
{
    if (isRunning() && !process_.waitForFinished(20'000)) {
        process_.kill();
        process_.waitForFinished();
        return -1;
    }
    return hasRun_ && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

} // namespace kelvo
