#pragma once

#include "Namespace.h"

namespace kelvo {

/// A laptop, and the internet at the other end of its Wi-Fi: two network namespaces and the link between them, which the
/// test breaks. The internet is this process's own namespace, so that its servers are started without further ado.
///
/// Nothing leads out of it. In the beginning the laptop is in no network.
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

    /// The laptop gets an address of that network, and a default route.
    void join(Wifi wifi);
    /// The laptop loses its addresses and with them its routes; the link stays.
    void leave();
    /// A cable besides the Wi-Fi, whose default route is preferred.
    void plugCable();
    /// Another interface with an address, but no default route, as a container or a telephone brings along.
    void attachSideInterface();
    void detachSideInterface();

    /// From now on the packets of all connections that are open vanish, in both directions; new ones work.
    void forgetOpenConnections();
    /// The same, for those inside the internet, from the balancer to the server behind it.
    void forgetConnectionsBehindBalancer();
    /// A rule of a packet filter at the internet's side (in the language of nft, for incoming packets); until `heal`.
    void filter(const QString &rule);
    /// Takes all of that back, except that forgotten connections stay forgotten.
    void heal();
    /// Both directions carry no more than that.
    void limitRate(int kilobitsPerSecond);

    /// TCP connections from the laptop that are open now.
    int openConnections() const;

private:
    void connectLaptop(const QString &there, const QString &here);
    void forget(const QString &chain, int era);

    Namespace internet_;
    Namespace laptop_;
    QProcess inLaptop_; ///< a process by whose number other programs find the laptop's namespace
    int radioEra_ = 1;
    int innerEra_ = 1;
};

} // namespace kelvo
