#pragma once

#include "sources/StatusChecks.h"

#include <QPromise>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kelvo {

/// Keeps every question, and leaves it open until the test answers it by hand, unless a script answers it at once.
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
    /// A question's place among all that were asked, from 0.
    using Number = std::size_t;

    QFuture<StatusReading> read(const Service &service) override;
    QFuture<bool> probe(const Service &service) override;
    /// Answers everything that is open as failed.
    void abortAll() override;

    /// Every question so far, in the order asked.
    const std::vector<Question> &asked() const { return asked_; }
    /// The services whose status was read, in the order asked.
    std::vector<ServiceID> reads() const;
    /// How often that was asked.
    int count(Kind kind) const;
    /// The open questions of that kind, oldest first.
    std::vector<Number> open(Kind kind) const;
    /// How often `abortAll` was called.
    int abortCount() const { return aborts_; }
    bool isOpen(Number question) const { return readings_.contains(question) || probes_.contains(question); }

    /// Answers that open question.
    void answerRead(Number question, StatusReading reading);
    void answerProbe(Number question, bool isUsable);
    /// Answers the oldest open question about that service.
    void answer(ServiceID service, ServiceHealth health, const QString &label = {});
    void answerProbe(ServiceID service, bool isUsable);
    /// Answers every open read alike.
    void answerAll(ServiceHealth health);
    /// Lets go of that open question without an answer: its future is cancelled.
    void drop(Number question);

    /// Answer at once where set; nothing leaves the question open.
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
