#pragma once

#include "FaultyServer.h"

#include <vector>

namespace kelvo {

/// The kinds of exchange that Kelvo has with servers.
enum class Exchange {
    page,     ///< a status check that reads a status page
    feed,     ///< a status check that reads Google's incident feed
    probe,    ///< the request to a service itself before its recovery is announced
    slack,    ///< a message to a Slack webhook
    telegram, ///< a message of a Telegram bot
};

/// What a status check must make of a fault.
enum class Reading {
    none,  ///< the status stays as it is
    taken, ///< the document counts, because it is complete and valid
};

/// What a probe must make of a fault.
enum class Use { no, yes };

/// What a post must make of a fault.
enum class Delivery { failed, delivered };

/// What must come of a fault in each kind of exchange.
struct Outcome
{
    Reading page;
    Reading feed;
    Use probe;
    Delivery post; ///< for Slack and Telegram

    bool operator==(const Outcome &) const = default;
};

/// What ends an exchange.
enum class End { itself, idleTimeout, totalDeadline };

enum class Certificate { good, expired, selfSigned, ofUnknownAuthority, forAnotherHost };

/// When the server sends its answer.
enum class Moment { accept, request };

/// A request to a server with a fault.
struct FaultyRequest
{
    Exchange exchange;
    QByteArray host;
    QByteArray path;
    QByteArray document; ///< a valid body, which the server may damage
    int variant;         ///< 0 up to the number of variants of the fault
};

/// A row of the table.
struct Fault
{
    const char *name;
    Outcome outcome;
    Answer (*answer)(const FaultyRequest &request);
    int variants = 1; ///< forms of the fault that have the same outcome
    End end = End::itself;
    Moment moment = Moment::request;
    Certificate certificate = Certificate::good;
    bool refusesConnections = false;
    bool wantsClientCertificate = false;
    bool isLimitedByTimeOnly = false; ///< the network layer keeps what arrives until the time limit
};

/// All faults.
const std::vector<Fault> &faults();

/// A complete response with the status 200 and this document.
Answer goodAnswer(const QByteArray &document);

} // namespace kelvo
