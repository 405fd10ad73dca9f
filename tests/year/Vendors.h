#pragma once

#include "Deeds.h"
#include "Oracle.h"
#include "Random.h"
#include "Timeline.h"

#include "sources/StatusChecks.h"

#include <QPromise>

#include <functional>
#include <map>
#include <variant>

namespace kelvo {

/// The vendors of a simulated year: their pages and their services, behind an unreliable network. Each answers a while
/// after it was asked, with what is the case then, and tells the oracle before it tells the program.
class Vendors : public StatusChecks
{
public:
    /// The state of one service.
    struct State
    {
        ServiceHealth page = ServiceHealth::operational;
        bool isUsable = true;
    };
    /// How many answers of each kind were given.
    struct Tally
    {
        long long reads = 0;
        long long failedReads = 0;
        long long probes = 0;
        long long refusedProbes = 0;
        long long abortedRequests = 0;
        long long overlaps = 0; ///< questions about a service of which another question was open
    };

    /// An answer that the program has received.
    struct Answer
    {
        ServiceID service;
        std::variant<ServiceHealth, bool> content; ///< of the page or of the probe
    };

    Vendors(Timeline &timeline, Random &random, std::function<void()> afterAnswer);

    QFuture<StatusReading> read(const Service &service) override;
    QFuture<bool> probe(const Service &service) override;
    void abortAll() override;

    /// The oracle of the program that runs now. Questions of an earlier program are forgotten.
    void setOracle(Oracle *oracle);
    /// What the program has done since the last call.
    Deeds takeDeeds() { return std::exchange(deeds_, {}); }
    bool isAnythingOpen() const { return !reads_.empty() || !probes_.empty(); }
    const Tally &tally() const { return tally_; }
    State &of(ServiceID id) { return states_[id]; }
    /// The answers since the last call.
    std::vector<Answer> takeAnswers() { return std::exchange(answers_, {}); }
    bool isOnline = true;

private:
    template<typename Content>
    struct Question
    {
        ServiceID service;
        QPromise<Content> promise;
    };

    std::chrono::milliseconds latency();
    StatusReading reading(ServiceID id);
    void answerRead(int check, const StatusReading &reading);
    void answerProbe(int check, bool isUsable);

    Timeline &timeline_;
    Random &random_;
    std::function<void()> afterAnswer_;
    Oracle *oracle_ = nullptr;
    std::map<ServiceID, State> states_;
    std::map<int, Question<StatusReading>> reads_;
    std::map<int, Question<bool>> probes_; ///< by the number of the read before
    int next_ = 0;
    int program_ = 0;              ///< the number of the program that asks
    std::optional<int> answering_; ///< the read that is being answered
    Deeds deeds_;
    std::vector<Answer> answers_;
    Tally tally_;
};

} // namespace kelvo
