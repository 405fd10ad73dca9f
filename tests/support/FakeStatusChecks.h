#pragma once

#include "sources/StatusChecks.h"

#include <QPromise>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kelvo {

/// Records every request as a question. A question stays open until the test answers it, unless a script answers it at
/// once.
class FakeStatusChecks : public StatusChecks
{
public:
    enum class Kind { read, probe };
    struct Question
    {
        Kind kind;
        ServiceID service;

        bool operator==(const Question &) const = default;
    };
    /// The index of a question in `asked`.
    using Number = std::size_t;

    QFuture<StatusReading> read(const Service &service) override;
    QFuture<bool> probe(const Service &service) override;
    /// Answers everything that is open as failed.
    void abortAll() override;

    /// All questions so far, in order.
    const std::vector<Question> &asked() const { return asked_; }
    /// The services whose status was requested, in order.
    std::vector<ServiceID> reads() const;
    /// The number of questions of this kind so far.
    int count(Kind kind) const;
    /// The open questions of this kind, oldest first.
    std::vector<Number> open(Kind kind) const;
    /// How often `abortAll` was called.
    int abortCount() const { return aborts_; }
    bool isOpen(Number question) const { return readings_.contains(question) || probes_.contains(question); }

    /// Answers an open question by its number.
    void answerRead(Number question, StatusReading reading);
    void answerProbe(Number question, bool isUsable);
    /// Answers the oldest open question about a service.
    void answer(ServiceID service, ServiceHealth health, const QString &label = {});
    void answerProbe(ServiceID service, bool isUsable);
    /// Answers every open read with this health.
    void answerAll(ServiceHealth health);
    /// Drops an open question without an answer; its future is cancelled.
    void drop(Number question);

    /// If set, answer a question at once. A result of nullopt leaves the question open.
    std::function<std::optional<StatusReading>(ServiceID)> readScript;
    std::function<std::optional<bool>(ServiceID)> probeScript;

private:
    Number oldestOpen(Question question) const;

    int aborts_ = 0;
    std::vector<Question> asked_;
    std::map<Number, QPromise<StatusReading>> readings_;
    std::map<Number, QPromise<bool>> probes_;
};

} // namespace kelvo
