#pragma once

#include "Namespace.h"

namespace kelvo {

/// A laptop and an internet: two network namespaces and the link between them, which the test breaks. The internet is the
/// namespace of this process, so its servers are ordinary child processes.
///
/// There is no connection to the outside. Initially the laptop is not connected.
class Network
{
public:
    enum class Wifi { Home, Cafe };

    // Addresses of the internet.
    static constexpr auto web = "198.51.100.10";
    static constexpr auto webIPv6 = "2001:db8::10";
    static constexpr auto balancer = "198.51.100.20";
    static constexpr auto proxy = "198.51.100.30";
    static constexpr auto resolver = "198.51.100.53";
    static constexpr auto portal = "198.51.100.99";

    Network();
    ~Network();

    const Namespace &laptop() const { return laptop_; }
    const Namespace &internet() const { return internet_; }

    /// Connects the laptop to a Wi-Fi: it gets an address and a default route.
    void join(Wifi wifi);
    /// Removes the addresses of the laptop, and with them its routes. The link stays up.
    void leave();
    /// Adds a cable whose default route is preferred to that of the Wi-Fi.
    void plugCable();
    /// Adds an interface with an address but without a default route, like that of a container or a phone.
    void attachSideInterface();
    void detachSideInterface();

    /// Drops all packets of the connections that are open now, in both directions. New connections work.
    void forgetOpenConnections();
    /// Does the same for the connections from the balancer to the server behind it.
    void forgetConnectionsBehindBalancer();
    /// Adds a packet filter rule (nft syntax) for packets that arrive at the internet. It is effective until `heal`.
    void filter(const QString &rule);
    /// Removes all filter rules. The packets of connections that were dropped before are still dropped.
    void heal();
    /// Limits the data rate of the link in both directions.
    void limitRate(int kilobitsPerSecond);

    /// The number of open TCP connections from the laptop.
    int openConnections() const;

private:
    void connectLaptop(const QString &there, const QString &here);
    void forget(const QString &chain, int era);

    Namespace internet_;
    Namespace laptop_;
    QProcess inLaptop_; ///< a process in the laptop's namespace; other programs find the namespace by its id
    int radioEra_ = 1;
    int innerEra_ = 1;
};

} // namespace kelvo
