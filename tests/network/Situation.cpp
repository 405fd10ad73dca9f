#include "Situation.h"

#include <QDateTime>

#include <cmath>
#include <ranges>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

using Names = Servers::Names;
using Seconds = Laptop::Seconds;
using Wifi = Network::Wifi;
using Figure = std::optional<double>;

const auto back = u"Claude is back"_s;
const auto page = "status.claude.com"_ba;
const auto proxyAddress = u"198.51.100.30:8888"_s;
const auto allThroughProxy = R"(function FindProxyForURL(url, host) { return "PROXY 198.51.100.30:8888"; })"_ba;

// ---- Steps ----

void require(bool condition, const QString &otherwise)
{
    if (!condition) {
        throw Defect{otherwise};
    }
}

Figure figure(std::optional<Seconds> time)
{
    return time ? Figure(time->count()) : std::nullopt;
}

void openTheWorld(World &world, Names names = Names::Right)
{
    world.servers.startWeb();
    world.servers.startNames(names);
}

void joinAtHome(World &world, Names names = Names::Right)
{
    openTheWorld(world, names);
    world.network.join(Wifi::Home);
}

/// Drops all packets to the web except those of the proxy.
void allowProxyOnly(World &world)
{
    world.network.filter(u"iifname radio ip daddr 198.51.100.10 tcp dport 443 drop"_s);
}

void useProxy(World &world, const QString &url)
{
    world.laptop.setEnvironment(u"http_proxy"_s, url);
    world.laptop.setEnvironment(u"https_proxy"_s, url);
}

void startUntil(World &world, RingState state)
{
    world.laptop.start();
    require(world.laptop.awaitRing(state, 20s).has_value(), u"the first check did not end well"_s);
}

/// Starts with operational services. The next round is in five minutes.
void startInPeace(World &world)
{
    world.laptop.setFiveMinutes();
    startUntil(world, RingState::available);
}

/// Starts with operational services. The next round is in one minute.
void startAtOneMinute(World &world)
{
    startUntil(world, RingState::available);
}

/// Starts with an outage, so that a round starts every 20 s. The first round has ended.
void startInTrouble(World &world)
{
    world.servers.setClaudeIsDown(true);
    startUntil(world, RingState::outage);
    Laptop::pass(1s);
}

/// Makes the service operational again and returns the time until the alert.
Figure untilAlert(World &world, const Limit &limit)
{
    const auto time = world.laptop.awaitAlert(back, Seconds(limit.value));
    Laptop::pass(1s);
    require(!time || world.laptop.alerts() == QStringList{back}, u"alerts: "_s + world.laptop.alerts().join(u", "_s));
    return figure(time);
}

Figure untilRing(World &world, RingState state, const Limit &limit)
{
    return figure(world.laptop.awaitRing(state, Seconds(limit.value)));
}

/// Returns the number of rounds that begin during `events` and in the seconds after it.
template<typename Events>
Figure roundsDuring(World &world, Seconds after, const Events &events)
{
    const auto before = world.servers.seen(page).size();
    events();
    Laptop::pass(after);
    return static_cast<double>(world.servers.seen(page).size() - before);
}

/// Waits for the first check, which fails and so changes nothing visible.
void failFirst(World &world)
{
    world.laptop.setFiveMinutes();
    world.laptop.start();
    Laptop::pass(3s);
    require(world.laptop.ring() == RingState::inactive, u"the ring is not hollow"_s);
}

// ---- Connections ----

Figure natForgets(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.laptop.setSettings("armedChannel=slack\nslackWebhookURL=https://hooks.slack.com/services/T0/B0/secret\n");
    startInTrouble(world);
    world.network.forgetOpenConnections();
    world.servers.setClaudeIsDown(false);
    const auto time = untilAlert(world, limit);
    require(!time
                || Laptop::await([&] { return world.servers.seen("hooks.slack.com"_ba).size() == 1; }, 5s).has_value(),
            u"not one post to Slack"_s);
    return time;
}

Figure otherWifiInTrouble(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInTrouble(world);
    world.network.leave();
    world.network.join(Wifi::Cafe);
    world.servers.setClaudeIsDown(false);
    return untilAlert(world, limit);
}

Figure tunnelDies(World &world, const Limit &limit)
{
    joinAtHome(world);
    allowProxyOnly(world);
    world.servers.startProxy();
    useProxy(world, u"http://"_s + proxyAddress);
    startInTrouble(world);
    world.network.forgetOpenConnections();
    world.servers.setClaudeIsDown(false);
    return untilAlert(world, limit);
}

Figure balancerKeepsDeadConnection(World &world, const Limit &limit)
{
    world.servers.startBalancer();
    joinAtHome(world, Names::ToBalancer);
    startInTrouble(world);
    world.network.forgetConnectionsBehindBalancer();
    world.servers.setClaudeIsDown(false);
    return untilAlert(world, limit);
}

Figure balancerIsSilent(World &world, const Limit &limit)
{
    world.servers.startBalancer();
    joinAtHome(world, Names::ToBalancer);
    startInTrouble(world);
    world.network.forgetConnectionsBehindBalancer();
    world.network.filter(u"iifname lo tcp dport 8443 drop"_s);
    world.servers.setClaudeIsDown(false);
    Laptop::pass(37s);
    require(world.laptop.alerts().isEmpty(), u"an alert out of silence"_s);
    world.network.heal();
    return untilAlert(world, limit);
}

Figure everythingIsDropped(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInTrouble(world);
    world.network.filter(u"iifname radio drop"_s);
    world.servers.setClaudeIsDown(false);
    Laptop::pass(37s);
    require(world.laptop.alerts().isEmpty(), u"an alert out of silence"_s);
    world.network.heal();
    return untilAlert(world, limit);
}

Figure aQuarterIsDropped(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInTrouble(world);
    world.network.filter(u"iifname radio numgen random mod 100 < 25 drop"_s);
    world.servers.setClaudeIsDown(false);
    return untilAlert(world, limit);
}

/// Each round starts within a few milliseconds of the moment when the server closes the connection of the previous one.
Figure serverClosesAtThePace(World &world, const Limit &)
{
    constexpr auto keepAlive = 1s;
    constexpr int rounds = 20;
    world.servers.setKeepAlive(static_cast<int>(keepAlive.count()));
    joinAtHome(world);
    startInPeace(world);
    int unanswered = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto answered = world.servers.seen(page);
        const double next = answered.last().time + keepAlive.count() + (round - 4) * 0.000125;
        while (static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000 < next - 0.01) {
            Laptop::pass(2ms);
        }
        world.laptop.sleep();
        while (static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000 < next) { }
        world.laptop.wake();
        if (!Laptop::await([&] { return world.servers.seen(page).size() > answered.size(); }, 3s)) {
            ++unanswered;
            world.laptop.sleep();
            world.laptop.wake();
            require(Laptop::await([&] { return world.servers.seen(page).size() > answered.size(); }, 20s).has_value(),
                    u"no answer at all any more"_s);
        }
    }
    return unanswered;
}

Figure betweenRounds(World &world, const Limit &)
{
    joinAtHome(world);
    startInTrouble(world);
    Laptop::pass(2s);
    return world.network.openConnections();
}

// ---- The user ----

Figure popoverIsOpenedTwice(World &world, const Limit &)
{
    joinAtHome(world);
    startInPeace(world);
    return roundsDuring(world, 3s, [&] {
        world.laptop.openPopover();
        Laptop::pass(3s);
        world.laptop.closePopover();
        Laptop::pass(1s);
        world.laptop.openPopover();
    });
}

Figure popoverAfterNatForgot(World &world, const Limit &limit)
{
    joinAtHome(world);
    startAtOneMinute(world);
    world.network.forgetOpenConnections();
    world.servers.setClaudeIsDown(true);
    world.laptop.openPopover();
    Laptop::pass(3s);
    world.laptop.closePopover();
    Laptop::pass(1s);
    world.laptop.openPopover();
    return untilRing(world, RingState::outage, limit);
}

Figure popoverInOtherWifi(World &world, const Limit &limit)
{
    joinAtHome(world);
    startAtOneMinute(world);
    world.network.leave();
    world.network.join(Wifi::Cafe);
    world.servers.setClaudeIsDown(true);
    world.laptop.openPopover();
    Laptop::pass(3s);
    world.laptop.closePopover();
    Laptop::pass(1s);
    world.laptop.openPopover();
    return untilRing(world, RingState::outage, limit);
}

Figure asleepInMidRequest(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInPeace(world);
    world.network.filter(u"iifname radio drop"_s);
    world.laptop.openPopover();
    Laptop::pass(2s);
    world.laptop.sleep();
    Laptop::pass(1s);
    world.network.forgetOpenConnections();
    world.network.heal();
    world.network.leave();
    world.network.join(Wifi::Cafe);
    world.servers.setClaudeIsDown(true);
    world.laptop.wake();
    return untilRing(world, RingState::outage, limit);
}

/// The name server of the first network does not answer, and a lookup is pending when the network changes.
Figure otherWifiInMidLookup(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInPeace(world);
    world.network.filter(u"iifname radio ip saddr 10.1.0.0/24 drop"_s);
    world.servers.setClaudeIsDown(true);
    world.laptop.openPopover();
    Laptop::pass(1s);
    world.network.leave();
    world.network.join(Wifi::Cafe);
    return untilRing(world, RingState::outage, limit);
}

// ---- Addresses and names ----

Figure ipv6IsSwallowed(World &world, const Limit &limit)
{
    joinAtHome(world, Names::RightWithIPv6);
    world.network.filter(u"iifname radio meta nfproto ipv6 tcp dport 443 drop"_s);
    world.laptop.setFiveMinutes();
    world.laptop.start();
    return untilRing(world, RingState::available, limit);
}

Figure namesAreLate(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.network.filter(u"iifname radio udp dport 53 drop"_s);
    world.laptop.setFiveMinutes();
    world.laptop.start();
    Laptop::pass(3s);
    world.network.heal();
    const auto time = untilRing(world, RingState::available, {limit.value - 3, limit.unit});
    return time ? Figure(*time + 3) : std::nullopt;
}

/// The first check fails because of the names. Then the names are right, and the popover is opened.
Figure namesGetRight(World &world, const Limit &limit, Names first)
{
    joinAtHome(world, first);
    failFirst(world);
    world.servers.startNames(Names::Right);
    world.laptop.openPopover();
    return untilRing(world, RingState::available, limit);
}

Figure serverFailure(World &world, const Limit &limit)
{
    return namesGetRight(world, limit, Names::ServerFailure);
}

Figure noSuchName(World &world, const Limit &limit)
{
    return namesGetRight(world, limit, Names::NoSuchName);
}

Figure captivePortal(World &world, const Limit &limit)
{
    return namesGetRight(world, limit, Names::ToPortal);
}

Figure captivePortalThenAwake(World &world, const Limit &limit)
{
    joinAtHome(world, Names::ToPortal);
    failFirst(world);
    world.laptop.sleep();
    world.servers.startNames(Names::Right);
    Laptop::pass(1s);
    world.laptop.wake();
    return untilRing(world, RingState::available, limit);
}

Figure quitWithSilentNames(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.network.filter(u"iifname radio udp dport 53 drop"_s);
    world.laptop.start();
    Laptop::pass(1s);
    return figure(world.laptop.quit(Seconds(limit.value)));
}

// ---- Proxies ----

/// Returns the time until the first check has ended. Checks that all requests used the proxy.
Figure untilGreenThroughProxy(World &world, const QString &url, const Limit &limit)
{
    allowProxyOnly(world);
    useProxy(world, url);
    world.laptop.setFiveMinutes();
    world.laptop.start();
    const auto time = untilRing(world, RingState::available, limit);
    require(!time || world.servers.proxied().contains("status.claude.com:443"_ba), u"the proxy was not used"_s);
    return time;
}

Figure plainProxy(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.servers.startProxy();
    return untilGreenThroughProxy(world, u"http://"_s + proxyAddress, limit);
}

Figure proxyWithPassword(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.servers.startProxy(8888, u"ada:lovelace"_s);
    return untilGreenThroughProxy(world, u"http://ada:lovelace@"_s + proxyAddress, limit);
}

Figure proxyWithWrongPassword(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.servers.startProxy(8888, u"ada:lovelace"_s);
    allowProxyOnly(world);
    useProxy(world, u"http://ada:byron@"_s + proxyAddress);
    failFirst(world);
    world.servers.killProxy();
    world.servers.startProxy(8888, u"ada:byron"_s);
    world.laptop.openPopover();
    return untilRing(world, RingState::available, limit);
}

Figure proxyDies(World &world, const Limit &limit)
{
    joinAtHome(world);
    allowProxyOnly(world);
    world.servers.startProxy(8888, u"ada:lovelace"_s);
    useProxy(world, u"http://ada:lovelace@"_s + proxyAddress);
    startInTrouble(world);
    world.servers.killProxy();
    world.servers.setClaudeIsDown(false);
    Laptop::pass(25s);
    require(world.laptop.alerts().isEmpty(), u"an alert out of nothing"_s);
    world.servers.startProxy(8888, u"ada:lovelace"_s);
    return untilAlert(world, limit);
}

Figure proxyFreezes(World &world, const Limit &limit)
{
    joinAtHome(world);
    allowProxyOnly(world);
    world.servers.startProxy();
    useProxy(world, u"http://"_s + proxyAddress);
    startInTrouble(world);
    world.servers.freezeProxy(true);
    world.servers.setClaudeIsDown(false);
    Laptop::pass(25s);
    require(world.laptop.alerts().isEmpty(), u"an alert out of nothing"_s);
    world.servers.freezeProxy(false);
    return untilAlert(world, limit);
}

Figure scriptFromFile(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.servers.startProxy();
    return untilGreenThroughProxy(world, u"pac+file://"_s + world.servers.publishScript(allThroughProxy), limit);
}

Figure scriptFromSlowServer(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.servers.startProxy();
    world.servers.publishScript(allThroughProxy);
    world.servers.startScriptServer(3s);
    const auto time = untilGreenThroughProxy(world, u"pac+http://198.51.100.20:8080/proxy.pac"_s, limit);
    require(world.laptop.longestPause() < 500ms,
            u"the main thread stood still for %1 s"_s.arg(world.laptop.longestPause().count()));
    return time;
}

void startWithSilentScriptServer(World &world, std::chrono::seconds silence)
{
    joinAtHome(world);
    allowProxyOnly(world);
    world.servers.startProxy();
    world.servers.publishScript(allThroughProxy);
    world.servers.startScriptServer(silence);
    useProxy(world, u"pac+http://198.51.100.20:8080/proxy.pac"_s);
    world.laptop.setFiveMinutes();
    world.laptop.start();
}

Figure scriptFromSilentServer(World &world, const Limit &)
{
    startWithSilentScriptServer(world, 1h);
    Laptop::pass(20s);
    return world.laptop.longestPause().count();
}

Figure scriptServerSpeaksAtLast(World &world, const Limit &limit)
{
    startWithSilentScriptServer(world, 18s);
    Laptop::pass(20s);
    world.laptop.openPopover();
    return untilRing(world, RingState::available, limit);
}

Figure quitWithSilentScriptServer(World &world, const Limit &limit)
{
    startWithSilentScriptServer(world, 1h);
    Laptop::pass(3s);
    return figure(world.laptop.quit(Seconds(limit.value)));
}

/// The script sends requests whose address contains more than the origin to another proxy, whose log shows them.
Figure scriptAndTelegram(World &world, const Limit &)
{
    joinAtHome(world);
    world.servers.startProxy(8888);
    world.servers.startProxy(8889);
    const auto script = world.servers.publishScript(R"(function FindProxyForURL(url, host) {
    return "PROXY 198.51.100.30:" + (/^https:\/\/[^\/]*\/?$/.test(url) ? 8888 : 8889);
})");
    useProxy(world, u"pac+file://"_s + script);
    world.laptop.setSettings("armedChannel=telegram\ntelegramBotToken=123:secret\ntelegramChatID=42\n");
    startInTrouble(world);
    world.servers.setClaudeIsDown(false);
    world.laptop.sleep();
    world.laptop.wake();
    const auto posted = [&] { return world.servers.seen("api.telegram.org"_ba).size() == 1; };
    require(Laptop::await(posted, 20s).has_value(), u"no post to Telegram"_s);
    return static_cast<double>(world.servers.proxied(8889).count("api.telegram.org:443"_ba));
}

// ---- The network appears and changes ----

Figure startedBeforeTheNetwork(World &world, const Limit &limit)
{
    openTheWorld(world);
    world.servers.tellResolver(false);
    failFirst(world);
    world.servers.tellResolver(true);
    world.network.join(Wifi::Home);
    return untilRing(world, RingState::available, limit);
}

Figure resolverComesLast(World &world, const Limit &limit)
{
    openTheWorld(world);
    world.servers.tellResolver(false);
    failFirst(world);
    world.network.join(Wifi::Home);
    Laptop::pass(1s);
    world.servers.tellResolver(true);
    return untilRing(world, RingState::available, limit);
}

Figure resolverComesMuchLater(World &world, const Limit &limit)
{
    openTheWorld(world);
    world.servers.tellResolver(false);
    failFirst(world);
    world.network.join(Wifi::Home);
    Laptop::pass(6s);
    world.servers.tellResolver(true);
    return untilRing(world, RingState::available, limit);
}

Figure networkComesAfterWaking(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInPeace(world);
    world.laptop.sleep();
    world.network.leave();
    world.servers.setClaudeIsDown(true);
    Laptop::pass(1s);
    world.laptop.wake();
    Laptop::pass(10s);
    require(world.laptop.ring() == RingState::available, u"the ring changed without a network"_s);
    world.network.join(Wifi::Cafe);
    return untilRing(world, RingState::outage, limit);
}

Figure addressIsLostAndComesBack(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInPeace(world);
    world.network.leave();
    world.servers.setClaudeIsDown(true);
    Laptop::pass(5s);
    world.network.join(Wifi::Home);
    return untilRing(world, RingState::outage, limit);
}

Figure otherWifiInPeace(World &world, const Limit &limit)
{
    joinAtHome(world);
    startInPeace(world);
    world.servers.setClaudeIsDown(true);
    world.network.leave();
    world.network.join(Wifi::Cafe);
    return untilRing(world, RingState::outage, limit);
}

Figure twoChangesInARow(World &world, const Limit &)
{
    joinAtHome(world);
    startInPeace(world);
    return roundsDuring(world, 8s, [&] {
        world.network.leave();
        world.network.join(Wifi::Cafe);
        Laptop::pass(1s);
        world.network.leave();
        world.network.join(Wifi::Home);
    });
}

Figure cableIsPlugged(World &world, const Limit &)
{
    joinAtHome(world);
    startInPeace(world);
    return roundsDuring(world, 8s, [&] { world.network.plugCable(); });
}

Figure sideInterface(World &world, const Limit &)
{
    joinAtHome(world);
    startInPeace(world);
    return roundsDuring(world, 5s, [&] {
        world.network.attachSideInterface();
        Laptop::pass(4s);
        world.network.detachSideInterface();
    });
}

Figure changeWhileAsleep(World &world, const Limit &)
{
    joinAtHome(world);
    startInPeace(world);
    world.laptop.sleep();
    return roundsDuring(world, 6s, [&] {
        world.network.leave();
        world.network.join(Wifi::Cafe);
    });
}

Figure changeWhileOff(World &world, const Limit &)
{
    joinAtHome(world);
    world.laptop.setSettings("watchOnThisMac=false\n");
    world.laptop.setFiveMinutes();
    world.laptop.start();
    return roundsDuring(world, 6s, [&] {
        world.network.leave();
        world.network.join(Wifi::Cafe);
    });
}

// ---- Large documents and slow links ----

constexpr qint64 largePage = 30'000'000;
/// Slightly less than the maximum size of a document.
constexpr qint64 fullPage = 4'000'000;

/// Sets a status page of this size that reports an outage.
void answerWithPage(World &world, qint64 size)
{
    joinAtHome(world);
    startInPeace(world);
    world.servers.setPageSize(size);
    world.servers.setClaudeIsDown(true);
    const auto before = world.servers.seen(page).size();
    world.laptop.beginToMeasure(true);
    world.laptop.sleep();
    world.laptop.wake();
    const auto isAnswered = [&] { return world.servers.seen(page).size() > before; };
    require(Laptop::await(isAnswered, 30s).has_value(), u"the page was not asked for"_s);
    Laptop::pass(5s);
}

void answerWithFullPage(World &world)
{
    answerWithPage(world, fullPage);
    require(world.laptop.ring() == RingState::outage, u"the page was not read"_s);
}

Figure memoryOfLargePage(World &world, const Limit &)
{
    answerWithPage(world, largePage);
    return static_cast<double>(world.laptop.memoryGrowth()) / 1'000'000;
}

Figure mainThreadOfLargePage(World &world, const Limit &)
{
    answerWithPage(world, largePage);
    return world.laptop.longestWork().count() * 1000;
}

Figure memoryOfFullPage(World &world, const Limit &)
{
    answerWithFullPage(world);
    return static_cast<double>(world.laptop.memoryGrowth()) / 1'000'000;
}

Figure mainThreadOfFullPage(World &world, const Limit &)
{
    answerWithFullPage(world);
    return world.laptop.longestWork().count() * 1000;
}

Figure secondGeneration(World &world, const Limit &limit)
{
    joinAtHome(world);
    world.network.limitRate(20);
    world.servers.setPageSize(16'000);
    world.laptop.setFiveMinutes();
    world.laptop.start();
    return untilRing(world, RingState::available, limit);
}

} // namespace

const std::vector<Situation> &situations()
{
    // clang-format off
    static const std::vector<Situation> table{
        {"nat-forgets", "The router forgets the open connections, in an outage that then ends",
         "The alert comes, also to Slack", {65, Unit::seconds}, natForgets},
        {"other-wifi-in-trouble", "Another Wi-Fi, in an outage that then ends",
         "The alert comes", {65, Unit::seconds}, otherWifiInTrouble},
        {"tunnel-dies", "The connections to the proxy die without notice, in an outage that then ends",
         "The alert comes", {65, Unit::seconds}, tunnelDies},
        {"balancer-keeps-dead-connection", "The balancer loses the server behind its open connections and still acknowledges, in an outage that then ends",
         "The alert comes", {65, Unit::seconds}, balancerKeepsDeadConnection},
        {"balancer-is-silent", "A balancer acknowledges and answers nothing for 37 s, then all is well",
         "No alert meanwhile; then the alert comes", {65, Unit::seconds}, balancerIsSilent},
        {"everything-is-dropped", "Every packet is dropped for 37 s, then all is well",
         "No alert meanwhile; then the alert comes", {65, Unit::seconds}, everythingIsDropped},
        {"a-quarter-is-dropped", "Every fourth packet is dropped, in an outage that ends",
         "The alert comes", {65, Unit::seconds}, aQuarterIsDropped},
        {"proxy-dies", "The proxy, which has a password, dies in an outage that ends, and is back after 25 s",
         "No alert meanwhile; then the alert comes", {65, Unit::seconds}, proxyDies},
        {"proxy-freezes", "The proxy freezes in an outage that ends, and continues after 25 s",
         "No alert meanwhile; then the alert comes", {65, Unit::seconds}, proxyFreezes},
        {"server-closes-at-the-pace", "The server closes the idle connection just when a round begins, 20 times",
         "Requests without an answer", {0, Unit::count, true}, serverClosesAtThePace},
        {"between-rounds", "Nothing happens between two rounds",
         "Connections that are open", {0, Unit::count, true}, betweenRounds},

        {"popover-is-opened-twice", "All is well, and the popover is opened twice",
         "Rounds that begin", {2, Unit::count, true}, popoverIsOpenedTwice},
        {"popover-after-nat-forgot", "The router forgets the open connections; the popover is opened twice",
         "The ring is right after the second opening", {5, Unit::seconds}, popoverAfterNatForgot},
        {"popover-in-other-wifi", "Another Wi-Fi; the popover is opened twice",
         "The ring is right after the second opening", {5, Unit::seconds}, popoverInOtherWifi},
        {"asleep-in-mid-request", "Asleep in mid-request, awake in another Wi-Fi",
         "The ring is right", {5, Unit::seconds}, asleepInMidRequest},
        {"other-wifi-in-mid-lookup", "Another Wi-Fi while the name server of the first one is silent",
         "The ring is right", {5, Unit::seconds}, otherWifiInMidLookup},

        {"ipv6-is-swallowed", "The names have IPv6 addresses, and IPv6 packets are dropped",
         "The first ring is right", {4, Unit::seconds}, ipv6IsSwallowed},
        {"names-are-late", "No name server answers in the first 3 s",
         "The first ring is right", {15, Unit::seconds}, namesAreLate},
        {"server-failure", "The name server fails (SERVFAIL), then is well; the popover is opened",
         "The ring is right", {5, Unit::seconds}, serverFailure},
        {"no-such-name", "The name server knows no name (NXDOMAIN), then is well; the popover is opened",
         "The ring is right", {5, Unit::seconds}, noSuchName},
        {"captive-portal", "Every name leads to a captive portal, then is right; the popover is opened",
         "The ring is right", {5, Unit::seconds}, captivePortal},
        {"captive-portal-then-awake", "Every name leads to a captive portal; asleep, awake, and they are right",
         "The ring is right", {5, Unit::seconds}, captivePortalThenAwake},
        {"quit-with-silent-names", "No name server answers; Kelvo is told to quit",
         "It has ended", {3, Unit::seconds}, quitWithSilentNames},

        {"proxy", "A proxy, and no other way",
         "The first ring is right", {5, Unit::seconds}, plainProxy},
        {"proxy-with-password", "A proxy with a password, and no other way",
         "The first ring is right", {5, Unit::seconds}, proxyWithPassword},
        {"proxy-with-wrong-password", "A proxy refuses the password, then takes it; the popover is opened",
         "The ring is right", {5, Unit::seconds}, proxyWithWrongPassword},
        {"script-from-file", "A proxy script in a file",
         "The first ring is right", {5, Unit::seconds}, scriptFromFile},
        {"script-from-slow-server", "A proxy script on a server that takes 3 s",
         "The first ring is right, and the main thread never stood still", {10, Unit::seconds}, scriptFromSlowServer},
        {"script-from-silent-server", "A proxy script on a server that does not answer",
         "The main thread stood still at most", {0.5, Unit::seconds}, scriptFromSilentServer},
        {"script-server-speaks-at-last", "A proxy script on a server that takes 18 s; the popover is opened after 20 s",
         "The ring is right", {5, Unit::seconds}, scriptServerSpeaksAtLast},
        {"quit-with-silent-script-server", "A proxy script on a server that does not answer; Kelvo is told to quit",
         "It has ended", {3, Unit::seconds}, quitWithSilentScriptServer},
        {"script-and-telegram", "A proxy script, and an alert to Telegram",
         "Lookups that tell the script more than the origin", {0, Unit::count, true}, scriptAndTelegram},

        {"started-before-the-network", "Started before the network is there",
         "The ring is right after it is", {5, Unit::seconds}, startedBeforeTheNetwork},
        {"resolver-comes-last", "Started before the network is there; the name server is known 1 s after the address",
         "The ring is right after it is", {5, Unit::seconds}, resolverComesLast},
        {"resolver-comes-much-later", "The same; the name server is known 6 s after the address",
         "The ring is right after it is", {5, Unit::seconds}, resolverComesMuchLater},
        {"network-comes-after-waking", "The network comes 10 s after waking",
         "The ring is right after it is there", {5, Unit::seconds}, networkComesAfterWaking},
        {"address-is-lost", "The address is lost for 5 s",
         "The ring is right after it is back", {5, Unit::seconds}, addressIsLostAndComesBack},
        {"other-wifi-in-peace", "Another Wi-Fi",
         "The ring is right", {5, Unit::seconds}, otherWifiInPeace},
        {"two-changes-in-a-row", "Another Wi-Fi, and back within two seconds",
         "Rounds that begin", {1, Unit::count, true}, twoChangesInARow},
        {"cable-is-plugged", "A cable is plugged besides the Wi-Fi",
         "Rounds that begin", {1, Unit::count, true}, cableIsPlugged},
        {"side-interface", "An interface without a default route comes and goes",
         "Rounds that begin", {0, Unit::count, true}, sideInterface},
        {"change-while-asleep", "Another Wi-Fi while the machine is asleep",
         "Rounds that begin", {0, Unit::count, true}, changeWhileAsleep},
        {"change-while-off", "Another Wi-Fi while watching is off",
         "Rounds that begin", {0, Unit::count, true}, changeWhileOff},

        {"memory-of-a-large-page", "A well-formed status page of 30 MB",
         "Memory above rest at the peak", {64, Unit::megabytes}, memoryOfLargePage},
        {"main-thread-of-a-large-page", "A well-formed status page of 30 MB",
         "The main thread computes at a stretch at most", {33, Unit::milliseconds}, mainThreadOfLargePage},
        {"memory-of-a-full-page", "A well-formed status page of 4 MB, which is read",
         "Memory above rest at the peak", {64, Unit::megabytes}, memoryOfFullPage},
        {"main-thread-of-a-full-page", "A well-formed status page of 4 MB, which is read",
         "The main thread computes at a stretch at most", {33, Unit::milliseconds}, mainThreadOfFullPage},
        {"second-generation", "20 kbit/s, as over 2G, and a page of 16 kB",
         "The first ring is right", {15, Unit::seconds}, secondGeneration},
    };
    // clang-format on
    return table;
}

} // namespace kelvo
