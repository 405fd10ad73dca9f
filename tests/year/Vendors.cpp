#include "Vendors.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

template<typename Questions>
bool isOpenFor(const Questions &questions, ServiceID id)
{
    return std::ranges::any_of(questions, [id](const auto &entry) { return entry.second.service == id; });
}

} // namespace

Vendors::Vendors(Timeline &timeline, Random &random, std::function<void()> afterAnswer)
    : timeline_(timeline)
    , random_(random)
    , afterAnswer_(std::move(afterAnswer))
{
}

void Vendors::setOracle(Oracle *oracle)
{
    oracle_ = oracle;
    ++program_;
    next_ = 0;
    reads_.clear();
    probes_.clear();
    deeds_ = {};
    answers_.clear();
}

QFuture<StatusReading> Vendors::read(const Service &service)
{
    tally_.overlaps += isOpenFor(reads_, service.id) || isOpenFor(probes_, service.id) ? 1 : 0;
    deeds_.reads.push_back(service.id);
    const int check = next_++;
    auto &question = reads_.emplace(check, Question<StatusReading>{service.id, {}}).first->second;
    question.promise.start();
    timeline_.in(latency(), [this, check, program = program_] {
        if (program == program_ && reads_.contains(check)) {
            answerRead(check, reading(reads_.at(check).service));
            afterAnswer_();
        }
    });
    return question.promise.future();
}

QFuture<bool> Vendors::probe(const Service &service)
{
    deeds_.probes.push_back(service.id);
    if (!answering_ || probes_.contains(*answering_)) {
        // Nobody expects this question; the oracle will complain. It stays open.
        QPromise<bool> promise;
        promise.start();
        return promise.future();
    }
    const int check = *answering_;
    auto &question = probes_.emplace(check, Question<bool>{service.id, {}}).first->second;
    question.promise.start();
    timeline_.in(latency(), [this, check, program = program_] {
        if (program == program_ && probes_.contains(check)) {
            answerProbe(check, isOnline && states_[probes_.at(check).service].isUsable);
            afterAnswer_();
        }
    });
    return question.promise.future();
}

void Vendors::abortAll()
{
    ++deeds_.aborts;
    std::vector<int> reads;
    std::vector<int> probes;
    std::ranges::transform(reads_, std::back_inserter(reads), [](const auto &entry) { return entry.first; });
    std::ranges::transform(probes_, std::back_inserter(probes), [](const auto &entry) { return entry.first; });
    tally_.abortedRequests += static_cast<long long>(reads.size() + probes.size());
    random_.shuffle(reads);
    random_.shuffle(probes);
    for (const int check : reads) {
        answerRead(check, {ServiceHealth::unknown, u"Couldn’t reach status"_s});
    }
    for (const int check : probes) {
        answerProbe(check, false);
    }
}

/// Most answers come within a second. Some take as long as a request may.
std::chrono::milliseconds Vendors::latency()
{
    if (!isOnline) {
        return random_.once(2) ? 15'000ms : random_.between(1ms, 3'000ms);
    }
    return random_.once(60) ? 15'000ms : random_.once(20) ? random_.between(1s, 12s) : random_.between(30ms, 900ms);
}

StatusReading Vendors::reading(ServiceID id)
{
    static const QStringList wordings{
        u"Partial outage"_s, u"Degraded performance"_s, u"Minor service disruption"_s, {}};
    if (!isOnline || random_.once(80)) {
        return {ServiceHealth::unknown, u"Couldn’t reach status"_s};
    }
    switch (const auto health = states_[id].page) {
    case ServiceHealth::operational: return {health, u"Operational"_s};
    case ServiceHealth::outage: return {health, u"Major outage"_s};
    default: return {health, random_.oneOf(wordings)};
    }
}

void Vendors::answerRead(int check, const StatusReading &reading)
{
    ++tally_.reads;
    tally_.failedReads += reading.health == ServiceHealth::unknown ? 1 : 0;
    oracle_->pageAnswers(check, reading);
    auto question = std::move(reads_.extract(check).mapped());
    answers_.push_back({question.service, reading.health});
    answering_ = check;
    question.promise.addResult(reading);
    question.promise.finish();
    answering_.reset();
}

void Vendors::answerProbe(int check, bool isUsable)
{
    ++tally_.probes;
    tally_.refusedProbes += isUsable ? 0 : 1;
    oracle_->probeAnswers(check, isUsable);
    auto question = std::move(probes_.extract(check).mapped());
    answers_.push_back({question.service, isUsable});
    question.promise.addResult(isUsable);
    question.promise.finish();
}

} // namespace kelvo
