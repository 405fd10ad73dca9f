// Runs Kelvo for thousands of rounds with vendors that fail in every way, and checks that it does not grow and that each
// alert is right.

#include "MeasuredProcess.h"
#include "NotificationCounter.h"
#include "UnreliableVendors.h"
#include "World.h"
#include "support/ResultTable.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace kelvo;
using namespace std::chrono_literals;

namespace {

/// What can grow.
struct Sample
{
    int rounds;
    Memory memory;
    int descriptors;
    int threads;
};

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

/// The anonymous memory that the last sample may have more than the first. Most of the heap is free between two rounds, and
/// how many of its pages have been used so far depends on the faults.
constexpr double permittedGrowthMegabytes = 0.5;

/// Kelvo with all services, all alerts and a Slack channel, and its unreliable vendors.
class Soak
{
public:
    explicit Soak(quint32 seed)
        : vendors_(world_.internet, seed)
        , kelvo_(startKelvo(world_,
                            watchingAll()
                                + "outageAlertsEnabled=true\narmedChannel=slack\n"
                                  "slackWebhookURL=https://hooks.slack.com/services/soak\n"))
    {
        // The real feed is a megabyte larger, and most of a round would be its transfer.
        world_.internet.setEndedIncidents(20);
        QObject::connect(&world_.internet, &SimulatedInternet::requestReceived,
                         [this](const SimulatedRequest &request) {
                             requests_ += 1;
                             posts_ += request.host == "hooks.slack.com"_L1 ? 1 : 0;
                         });
        waitForQuiet();
        idleThreads_ = threadsOf(processId());
    }

    void runTo(int rounds)
    {
        while (rounds_ < rounds) {
            vendors_.change();
            round();
            ++rounds_;
        }
    }

    /// Lets a round of requests end by their timeouts, lets everything fail and recover, and measures when all connections
    /// are closed.
    Sample sample()
    {
        vendors_.fallSilent();
        startRound();
        waitUntil("the timeouts", [this] { return world_.internet.connectionsOpen() == 0; });
        vendors_.breakDown();
        expectServicesDown(vendors_.servicesInTrouble());
        vendors_.recover();
        expectServicesDown(0);
        waitForQuiet();
        const auto id = processId();
        return {rounds_, memoryOf(id), descriptorsOf(id), threadsOf(id)};
    }

    qint64 processId() const { return kelvo_->processId(); }
    int requests() const { return requests_; }
    int posts() const { return posts_; }
    /// The rounds in which some request did not arrive within a second.
    int incompleteRounds() const { return incompleteRounds_; }
    /// Those of them that no silent vendor delayed, and that ended by their timeouts.
    int hangingRounds() const { return hangingRounds_; }
    int alerts() const { return notifications_.alerts(); }
    /// The alerts that came twice, out of order or not at all, as texts for people.
    QStringList wrongAlerts() const { return notifications_.faults() + missingAlerts_; }

private:
    void startRound()
    {
        world_.internet.clearRequests();
        world_.wake();
        // When connections break, the network layer gives up the requests that wait for one. Kelvo sends them again, once.
        const auto &requests = world_.internet.requests();
        if (!letHappen(1s, [&] { return requests.size() >= vendors_.requestsOfARound(); })) {
            ++incompleteRounds_;
            hangingRounds_ += vendors_.isSomeoneSilent() || ends() ? 0 : 1;
        }
        if (!kelvo_->isRunning()) {
            qFatal("Kelvo has ended in round %d", rounds_);
        }
    }

    /// Whether the round ends before its timeouts. Each round has threads of its own.
    bool ends() const
    {
        for (int time = 0; time < 200; ++time) {
            letPass(50ms);
            if (threadsOf(processId()) <= idleThreads_) {
                return true;
            }
        }
        return false;
    }

    /// The next round aborts the requests that a silent vendor leaves open.
    void round()
    {
        startRound();
        if (vendors_.isSomeoneSilent()) {
            letPass(40ms);
        } else {
            letHappen(1s, [this] { return world_.internet.connectionsOpen() == 0; });
        }
    }

    /// Lets Kelvo learn the state of all vendors, and checks what its alerts tell then.
    void expectServicesDown(int services)
    {
        for (int time = 0; time < 20 && notifications_.servicesDown() != services; ++time) {
            round();
        }
        round(); // raises no further alert
        if (const int told = notifications_.servicesDown(); told != services) {
            missingAlerts_.append(
                u"Round %1: %2 services are down, and alerts tell of %3"_s.arg(rounds_).arg(services).arg(told));
        }
    }

    /// Waits until all connections are closed. A round of the program's own may begin meanwhile.
    void waitForQuiet()
    {
        do {
            letPass(2s);
        } while (world_.internet.connectionsOpen() > 0);
    }

    NotificationCounter notifications_;
    World world_;
    UnreliableVendors vendors_;
    std::unique_ptr<KelvoProcess> kelvo_;
    int rounds_ = 0;
    int requests_ = 0;
    int posts_ = 0;
    int incompleteRounds_ = 0;
    int hangingRounds_ = 0;
    int idleThreads_ = 0;
    QStringList missingAlerts_;
};

QString megabytes(double value)
{
    return u"%1 MB"_s.arg(value, 0, 'f', 1);
}

template<typename Count>
void printGrowth(const QMap<QString, Count> &before, const QMap<QString, Count> &after, const QString &unit)
{
    auto names = before.keys() + after.keys();
    names.sort();
    names.removeDuplicates();
    for (const auto &name : std::as_const(names)) {
        if (before.value(name) != after.value(name)) {
            out() << "  " << name << ": " << before.value(name) << " -> " << after.value(name) << unit << Qt::endl;
        }
    }
}

QByteArray table(const Sample &before, const Sample &after, const Soak &soak)
{
    QByteArray text;
    const auto row = [&text](const QStringList &cells) { text += "| "_ba + cells.join(" | "_L1).toUtf8() + " |\n"_ba; };
    row({u"What"_s, u"After %L1 rounds"_s.arg(before.rounds), u"After %L1 rounds"_s.arg(after.rounds), u"Limit"_s});
    text += "|---|---|---|---|\n"_ba;
    row({u"Resident memory"_s, megabytes(before.memory.residentMegabytes), megabytes(after.memory.residentMegabytes),
         u"none"_s});
    row({u"Anonymous memory"_s, megabytes(before.memory.anonymousMegabytes), megabytes(after.memory.anonymousMegabytes),
         megabytes(permittedGrowthMegabytes) + " more"_L1});
    row({u"Descriptors"_s, QString::number(before.descriptors), QString::number(after.descriptors), u"the same"_s});
    row({u"Threads"_s, QString::number(before.threads), QString::number(after.threads), u"the same"_s});
    text +=
        u"\nIn this run Kelvo sent %L1 requests and %L2 alerts, %3 of them twice, out of order or not at all.\nIn %4 "
        "rounds a request did not arrive within a second; %5 of these rounds ended only by their timeouts.\n"_s
            .arg(soak.requests())
            .arg(soak.alerts())
            .arg(soak.wrongAlerts().size())
            .arg(soak.incompleteRounds())
            .arg(soak.hangingRounds())
            .toUtf8();
    return text;
}

/// The last sample, with the lowest memory of the last three: now and then the allocator's heap has a peak, which goes away.
/// What leaks stays.
Sample lastOf(const QList<Sample> &samples)
{
    auto last = samples.last();
    for (const auto &sample : samples.last(std::min<qsizetype>(3, samples.size()))) {
        if (sample.memory.anonymousMegabytes < last.memory.anonymousMegabytes) {
            last.memory = sample.memory;
        }
    }
    return last;
}

/// What is not as it must be, as texts for people.
QStringList failures(const Sample &before, const Sample &after, const Soak &soak)
{
    QStringList failures = soak.wrongAlerts();
    if (soak.posts() != soak.alerts()) {
        failures.append(u"%1 alerts, but %2 posts"_s.arg(soak.alerts()).arg(soak.posts()));
    }
    if (soak.hangingRounds() > 0) {
        failures.append(u"%1 rounds ended only by their timeouts"_s.arg(soak.hangingRounds()));
    }
    const auto growth = after.memory.anonymousMegabytes - before.memory.anonymousMegabytes;
    if (growth > permittedGrowthMegabytes) {
        failures.append(u"The anonymous memory grew by %1 MB; permitted are %2 MB"_s.arg(growth, 0, 'f', 2)
                            .arg(permittedGrowthMegabytes));
    }
    if (after.descriptors != before.descriptors) {
        failures.append(u"Descriptors: first %1, then %2"_s.arg(before.descriptors).arg(after.descriptors));
    }
    if (after.threads != before.threads) {
        failures.append(u"Threads: first %1, then %2"_s.arg(before.threads).arg(after.threads));
    }
    return failures;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Runs Kelvo for many rounds with vendors that fail in every way. It samples at each tenth of the rounds, and "
        "compares the last sample, with the lowest memory of the last three, with the first. The exit status is 1 if "
        "the number of descriptors or threads has "
        "changed, if the anonymous memory has grown by more than %1 MB, if an alert came twice, out of order or not at "
        "all, or if a round without a silent vendor ended only by its timeouts."_s.arg(permittedGrowthMegabytes));
    parser.addHelpOption();
    const QCommandLineOption seedOption(u"seed"_s, u"Choose the faults as in an earlier run."_s, u"number"_s);
    const QCommandLineOption writeOption(u"write"_s, u"Write the table into this document."_s, u"document"_s);
    parser.addOptions({seedOption, writeOption});
    parser.addPositionalArgument(u"rounds"_s, u"The number of rounds (20000)."_s, u"[rounds]"_s);
    parser.process(application);
    const auto rounds = parser.positionalArguments().value(0, u"20000"_s).toInt();
    const auto seed = parser.isSet(seedOption) ? parser.value(seedOption).toUInt()
                                               : QRandomGenerator::global()->generate();
    out() << "Seed " << seed << Qt::endl;

    QElapsedTimer elapsed;
    elapsed.start();
    Soak soak(seed);
    QList<Sample> samples;
    QMap<QString, long long> mappings;
    QMap<QString, int> descriptors;
    for (int tenth = 1; tenth <= 10; ++tenth) {
        soak.runTo(rounds * tenth / 10);
        samples.append(soak.sample());
        const auto &s = samples.last();
        out() << u"%1 s: %2 rounds, %3 requests, %4 alerts, %5 posts; resident %6 MB, anonymous %7 MB, %8 descriptors, "
                 u"%9 threads, "
                 "%10 rounds incomplete, %11 hanging"_s.arg(elapsed.elapsed() / 1000)
                     .arg(s.rounds)
                     .arg(soak.requests())
                     .arg(soak.alerts())
                     .arg(soak.posts())
                     .arg(s.memory.residentMegabytes, 0, 'f', 2)
                     .arg(s.memory.anonymousMegabytes, 0, 'f', 2)
                     .arg(s.descriptors)
                     .arg(s.threads)
                     .arg(soak.incompleteRounds())
                     .arg(soak.hangingRounds())
              << Qt::endl;
        const auto mappingsNow = anonymousMemoryByMapping(soak.processId());
        const auto descriptorsNow = descriptorsByName(soak.processId());
        if (tenth > 1) {
            printGrowth(mappings, mappingsNow, u" kB"_s);
            printGrowth(descriptors, descriptorsNow, {});
            if (parser.isSet(writeOption)) {
                writeResultTable(parser.value(writeOption), "./dev soak",
                                 table(samples.first(), lastOf(samples), soak));
            }
        }
        mappings = mappingsNow;
        descriptors = descriptorsNow;
    }
    const auto found = failures(samples.first(), lastOf(samples), soak);
    for (const auto &failure : found) {
        out() << "FAIL: " << failure << Qt::endl;
    }
    out() << (found.isEmpty() ? "PASS" : "FAIL") << Qt::endl;
    return found.isEmpty() ? 0 : 1;
}
