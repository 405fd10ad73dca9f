#include "Laptop.h"

#include "Defect.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTest>
#include <QVariantMap>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

const auto itemPath = u"/StatusNotifierItem"_s;
const auto itemInterface = u"org.kde.StatusNotifierItem"_s;

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Returns the state that the colour in the centre of the picture (ARGB) stands for.
RingState ringIn(const QByteArray &picture, int width, int height)
{
    const auto middle = picture.mid(4 * (height / 2 * width + width / 2), 4);
    const auto red = static_cast<uchar>(middle[1]);
    const auto green = static_cast<uchar>(middle[2]);
    if (middle[0] != '\xff') {
        return RingState::inactive;
    }
    if (green > red) {
        return RingState::available;
    }
    return green > red / 3 ? RingState::recovering : RingState::outage;
}

} // namespace

Laptop::Laptop(const Network &network)
    : tray_(session_, FakeStatusNotifierWatcher::Host::registered)
    , notifications_(session_, {u"body"_s})
    , logind_(system_)
{
    network.laptop().adopt(program_);
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto &name : environment.keys()) {
        if (name.endsWith("_proxy"_L1, Qt::CaseInsensitive) || name.startsWith("XDG_"_L1)) {
            environment.remove(name);
        }
    }
    environment.insert(u"HOME"_s, home_.path());
    environment.insert(u"XDG_CONFIG_HOME"_s, home_.path());
    environment.insert(u"XDG_RUNTIME_DIR"_s, home_.path());
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, session_.address());
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, system_.address());
    environment.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
    program_.setProcessEnvironment(environment);
    program_.setProcessChannelMode(QProcess::MergedChannels);

    nextQuestion_.setSingleShot(true);
    nextQuestion_.setInterval(50ms);
    connect(&nextQuestion_, &QTimer::timeout, this, &Laptop::ask);
}

Laptop::~Laptop()
{
    program_.kill();
    program_.waitForFinished();
}

void Laptop::setEnvironment(const QString &name, const QString &value)
{
    auto environment = program_.processEnvironment();
    environment.insert(name, value);
    program_.setProcessEnvironment(environment);
}

void Laptop::start()
{
    QDir(home_.path()).mkdir(u"Kelvo"_s);
    QFile file(home_.filePath(u"Kelvo/Kelvo.conf"_s));
    if (!file.open(QIODevice::WriteOnly)) {
        throw Defect{u"no settings file"_s};
    }
    file.write("[General]\nhasOnboarded=true\nenabledServices=claude\ncheckInterval="_ba + (fiveMinutes_ ? "300" : "60")
               + '\n' + settings_);
    file.close();
    program_.start(QStringLiteral(KELVO_PROGRAM), QStringList());
    if (!await([this] { return !tray_.items().isEmpty(); }, 30s)) {
        throw Defect{u"the program shows no ring: "_s + QString::fromUtf8(program_.readAll())};
    }
    ask();
}

std::optional<Laptop::Seconds> Laptop::quit(Seconds atMost)
{
    program_.terminate();
    return await([this] { return program_.state() == QProcess::NotRunning; }, atMost);
}

QStringList Laptop::alerts() const
{
    QStringList titles;
    for (const auto &notification : notifications_.notifications()) {
        titles.append(notification.summary);
    }
    return titles;
}

std::optional<Laptop::Seconds> Laptop::await(const std::function<bool()> &condition, Seconds atMost)
{
    QElapsedTimer elapsed;
    elapsed.start();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(atMost);
    if (!QTest::qWaitFor(condition, static_cast<int>(milliseconds.count()))) {
        return std::nullopt;
    }
    return Seconds(std::chrono::nanoseconds(elapsed.nsecsElapsed()));
}

std::optional<Laptop::Seconds> Laptop::awaitRing(RingState state, Seconds atMost)
{
    return await([this, state] { return ring_ == state; }, atMost);
}

std::optional<Laptop::Seconds> Laptop::awaitAlert(const QString &title, Seconds atMost)
{
    return await([this, title] { return alerts().contains(title); }, atMost);
}

void Laptop::pass(Seconds time)
{
    QTest::qWait(static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()));
}

void Laptop::beginToMeasure(bool closely)
{
    nextQuestion_.setInterval(closely ? 0ms : 50ms);
    longestPause_ = 0s;
    longestWork_ = 0s;
    // Reset the peak.
    QFile reset(u"/proc/%1/clear_refs"_s.arg(program_.processId()));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1) {
        throw Defect{u"the peak of the memory cannot be set back"_s};
    }
    reset.close();
    memoryBefore_ = memory("VmRSS:"_ba);
}

Laptop::Seconds Laptop::longestPause() const
{
    const Seconds unanswered = asking_ ? Seconds(std::chrono::nanoseconds(asked_.nsecsElapsed())) : Seconds(0);
    return std::max(longestPause_, unanswered);
}

qint64 Laptop::memoryGrowth() const
{
    return memory("VmHWM:"_ba) - memoryBefore_;
}

void Laptop::activate()
{
    auto message = QDBusMessage::createMethodCall(tray_.items().last(), itemPath, itemInterface, u"Activate"_s);
    message << 100 << 100;
    tray_.connection().asyncCall(message);
}

void Laptop::ask()
{
    auto question = QDBusMessage::createMethodCall(tray_.items().last(), itemPath, u"org.freedesktop.DBus.Properties"_s,
                                                   u"GetAll"_s);
    question << itemInterface;
    asking_ = true;
    asked_.start();
    workBefore_ = mainThreadTime();
    // The program may block for longer than the default timeout of a call.
    auto *answer = new QDBusPendingCallWatcher(tray_.connection().asyncCall(question, 600'000), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &Laptop::hear);
}

void Laptop::hear(QDBusPendingCallWatcher *answer)
{
    answer->deleteLater();
    longestPause_ = longestPause();
    longestWork_ = std::max(longestWork_, Seconds(mainThreadTime() - workBefore_));
    asking_ = false;
    if (answer->isError()) {
        return;
    }
    const auto properties = qdbus_cast<QVariantMap>(answer->reply().arguments().value(0).value<QDBusArgument>());
    const auto pictures = properties.value(u"IconPixmap"_s).value<QDBusArgument>();
    pictures.beginArray();
    if (!pictures.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray picture;
        pictures.beginStructure();
        pictures >> width >> height >> picture;
        pictures.endStructure();
        ring_ = ringIn(picture, width, height);
    }
    const auto tip = properties.value(u"ToolTip"_s).value<QDBusArgument>();
    QString icon;
    tip.beginStructure();
    tip >> icon;
    tip.beginArray();
    while (!tip.atEnd()) {
        tip.asVariant();
    }
    tip.endArray();
    tip >> toolTip_;
    tip.endStructure();
    nextQuestion_.start();
}

double Laptop::mainThreadTime() const
{
    const auto id = program_.processId();
    return contentsOf(u"/proc/%1/task/%1/schedstat"_s.arg(id)).split(' ').value(0).toDouble() / 1e9;
}

qint64 Laptop::memory(const QByteArray &key) const
{
    for (const auto &line : contentsOf(u"/proc/%1/status"_s.arg(program_.processId())).split('\n')) {
        if (line.startsWith(key)) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    throw Defect{u"no memory: is the program still there?"_s};
}

} // namespace kelvo
