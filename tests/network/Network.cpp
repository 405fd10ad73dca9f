#include "Network.h"

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

// Each connection is marked with the era in which it was opened. forgetOpenConnections() begins a new era and drops the
// packets of all earlier ones.
const auto filterTables = R"(
table inet world {
    chain radio_era { ct mark 0 ct mark set 1; }
    chain inner_era { ct mark 0 ct mark set 1; }
    chain broken { }
    chain incoming {
        type filter hook input priority 0; policy accept;
        iifname "radio" jump radio_era
        iifname "lo" jump inner_era
        jump broken
    }
    chain outgoing {
        type filter hook output priority 0; policy accept;
        oifname "radio" jump radio_era
        oifname "lo" jump inner_era
    }
}
)"_ba;

QString prefix(Network::Wifi wifi)
{
    return wifi == Network::Wifi::Home ? u"10.1.0."_s : u"10.2.0."_s;
}

QString prefixIPv6(Network::Wifi wifi)
{
    return wifi == Network::Wifi::Home ? u"2001:db8:a::"_s : u"2001:db8:b::"_s;
}

} // namespace

Network::Network()
    : internet_(Namespace::current())
    , laptop_(Namespace::make())
{
    internet_.run(u"ip link set lo up"_s);
    for (const auto *address : {web, balancer, proxy, resolver, portal}) {
        internet_.run(u"ip address add %1/32 dev lo"_s.arg(QLatin1StringView(address)));
    }
    internet_.run(u"ip address add %1/128 dev lo nodad"_s.arg(QLatin1StringView(webIPv6)));

    laptop_.adopt(inLaptop_);
    inLaptop_.start(u"sleep"_s, {u"infinity"_s});
    inLaptop_.waitForStarted();
    connectLaptop(u"radio"_s, u"wlan0"_s);
    for (const auto wifi : {Wifi::Home, Wifi::Cafe}) {
        internet_.run(u"ip address add %1/24 dev radio"_s.arg(prefix(wifi) + u'1'));
        internet_.run(u"ip address add %1/64 dev radio nodad"_s.arg(prefixIPv6(wifi) + u'1'));
    }
    internet_.run(u"ip link set radio up"_s);
    laptop_.run(u"ip link set wlan0 up"_s);
    internet_.run(u"nft -f -"_s, filterTables);
}

Network::~Network()
{
    inLaptop_.kill();
    inLaptop_.waitForFinished();
}

void Network::connectLaptop(const QString &there, const QString &here)
{
    internet_.run(u"ip link add %1 type veth peer name %2 netns %3"_s.arg(there, here).arg(inLaptop_.processId()));
}

void Network::join(Wifi wifi)
{
    laptop_.run(u"ip address add %1/24 dev wlan0"_s.arg(prefix(wifi) + u'2'));
    laptop_.run(u"ip address add %1/64 dev wlan0 nodad"_s.arg(prefixIPv6(wifi) + u'2'));
    laptop_.run(u"ip route add default via %1 metric 600"_s.arg(prefix(wifi) + u'1'));
    laptop_.run(u"ip -6 route add default via %1"_s.arg(prefixIPv6(wifi) + u'1'));
}

void Network::leave()
{
    laptop_.run(u"ip -6 route flush default"_s);
    laptop_.run(u"ip address flush dev wlan0 scope global"_s);
}

void Network::plugCable()
{
    connectLaptop(u"wire"_s, u"eth0"_s);
    internet_.run(u"ip address add 10.3.0.1/24 dev wire"_s);
    internet_.run(u"ip link set wire up"_s);
    laptop_.run(u"ip address add 10.3.0.2/24 dev eth0"_s);
    laptop_.run(u"ip link set eth0 up"_s);
    laptop_.run(u"ip route add default via 10.3.0.1 metric 100"_s);
}

void Network::attachSideInterface()
{
    laptop_.run(u"ip link add usb0 type veth peer name phone"_s);
    laptop_.run(u"ip address add 10.4.0.2/24 dev usb0"_s);
    laptop_.run(u"ip link set phone up"_s);
    laptop_.run(u"ip link set usb0 up"_s);
}

void Network::detachSideInterface()
{
    laptop_.run(u"ip link delete usb0"_s);
}

void Network::forgetOpenConnections()
{
    forget(u"radio_era"_s, ++radioEra_);
}

void Network::forgetConnectionsBehindBalancer()
{
    forget(u"inner_era"_s, ++innerEra_);
}

void Network::forget(const QString &chain, int era)
{
    internet_.run(u"nft -f -"_s,
                  u"flush chain inet world %1\n"
                  "add rule inet world %1 ct mark 0 ct mark set %2\n"
                  "add rule inet world %1 ct mark != %2 drop\n"_s.arg(chain)
                      .arg(era)
                      .toUtf8());
}

void Network::filter(const QString &rule)
{
    internet_.run(u"nft -f -"_s, "add rule inet world broken "_ba + rule.toUtf8() + '\n');
}

void Network::heal()
{
    internet_.run(u"nft flush chain inet world broken"_s);
}

void Network::limitRate(int kilobitsPerSecond)
{
    const auto limit = u"tc qdisc add dev %2 root tbf rate %1kbit burst 2kb latency 30s"_s.arg(kilobitsPerSecond);
    // Use the same congestion control on every machine. Others treat a slow link without latency as congested.
    internet_.run(u"sh -c \"echo reno > /proc/sys/net/ipv4/tcp_congestion_control\""_s);
    internet_.run(limit.arg(u"radio"_s));
    laptop_.run(limit.arg(u"wlan0"_s));
}

int Network::openConnections() const
{
    return static_cast<int>(laptop_.ask(u"ss --no-header --tcp state established"_s).count('\n'));
}

} // namespace kelvo
