// Runs Kelvo for thousands of rounds with vendors that fail in every way, and measures whether it grows.

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
    }

    void runTo(int rounds)
    {
        while (rounds_ < rounds) {
            vendors_.change();
            round();
            ++rounds_;
        }
    }

    /// Lets a round of requests end by their timeouts, lets everything recover, and measures when all connections are
    /// closed.
    Sample sample()
    {
        vendors_.fallSilent();
        startRound();
        waitUntil("the timeouts", [this] { return world_.internet.connectionsOpen() == 0; });
        vendors_.recover();
        for (int time = 0; time < 3; ++time) {
            round();
        }
        // A round of the program's own may begin meanwhile.
        do {
            letPass(2s);
        } while (world_.internet.connectionsOpen() > 0);
        const auto id = kelvo_->processId();
        return {rounds_, memoryOf(id), descriptorsOf(id), threadsOf(id)};
    }

    qint64 processId() const { return kelvo_->processId(); }
    int requests() const { return requests_; }
    int posts() const { return posts_; }
    /// The rounds in which some request did not arrive within a second.
    int incompleteRounds() const { return incompleteRounds_; }
    const NotificationCounter &notifications() const { return notifications_; }

private:
    void startRound()
    {
        world_.internet.clearRequests();
        world_.wake();
        // A request that waits for a connection is lost with the connection, until its timeout.
        const auto &requests = world_.internet.requests();
        if (!letHappen(1s, [&] { return requests.size() >= vendors_.requestsOfARound(); })) {
            ++incompleteRounds_;
        }
        if (!kelvo_->isRunning()) {
            qFatal("Kelvo has ended in round %d", rounds_);
        }
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

    NotificationCounter notifications_;
    World world_;
    UnreliableVendors vendors_;
    std::unique_ptr<KelvoProcess> kelvo_;
    int rounds_ = 0;
    int requests_ = 0;
    int posts_ = 0;
    int incompleteRounds_ = 0;
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
    row({u"What"_s, u"After %L1 rounds"_s.arg(before.rounds), u"After %L1 rounds"_s.arg(after.rounds)});
    text += "|---|---|---|\n"_ba;
    row({u"Resident memory"_s, megabytes(before.memory.residentMegabytes), megabytes(after.memory.residentMegabytes)});
    row({u"Anonymous memory"_s, megabytes(before.memory.anonymousMegabytes),
         megabytes(after.memory.anonymousMegabytes)});
    row({u"Descriptors"_s, QString::number(before.descriptors), QString::number(after.descriptors)});
    row({u"Threads"_s, QString::number(before.threads), QString::number(after.threads)});
    text += u"\nIn this run Kelvo sent %L1 requests and %L2 alerts, %3 of them twice or out of order.\n"_s
                .arg(soak.requests())
                .arg(soak.notifications().alerts())
                .arg(soak.notifications().faults().size())
                .toUtf8();
    return text;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Runs Kelvo for many rounds with vendors that fail in every way, and measures "
                                     u"whether it grows. It samples at each "
                                     "tenth of the rounds, and compares the last sample with the first."_s);
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
                 "%10 rounds incomplete"_s.arg(elapsed.elapsed() / 1000)
                     .arg(s.rounds)
                     .arg(soak.requests())
                     .arg(soak.notifications().alerts())
                     .arg(soak.posts())
                     .arg(s.memory.residentMegabytes, 0, 'f', 2)
                     .arg(s.memory.anonymousMegabytes, 0, 'f', 2)
                     .arg(s.descriptors)
                     .arg(s.threads)
                     .arg(soak.incompleteRounds())
              << Qt::endl;
        const auto mappingsNow = anonymousMemoryByMapping(soak.processId());
        const auto descriptorsNow = descriptorsByName(soak.processId());
        if (tenth > 1) {
            printGrowth(mappings, mappingsNow, u" kB"_s);
            printGrowth(descriptors, descriptorsNow, {});
            if (parser.isSet(writeOption)) {
                writeResultTable(parser.value(writeOption), "./dev soak", table(samples.first(), samples.last(), soak));
            }
        }
        mappings = mappingsNow;
        descriptors = descriptorsNow;
    }
    for (const auto &fault : soak.notifications().faults()) {
        out() << fault << Qt::endl;
    }
    return 0;
}
