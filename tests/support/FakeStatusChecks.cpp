#include "support/FakeStatusChecks.h"

#include "ReadyFuture.h"

#include <algorithm>

namespace kelvo {

namespace {

template<typename Answer>
QFuture<Answer> leaveOpen(std::map<FakeStatusChecks::Number, QPromise<Answer>> &promises,
                          FakeStatusChecks::Number question)
{
    QPromise<Answer> promise;
    promise.start();
    const auto future = promise.future();
    promises.emplace(question, std::move(promise));
    return future;
}

/// Removes the promise from the map before it is finished, because a continuation may add the next one.
template<typename Answer>
void keepPromise(std::map<FakeStatusChecks::Number, QPromise<Answer>> &promises, FakeStatusChecks::Number question,
                 Answer answer)
{
    auto taken = promises.extract(question);
    if (taken.empty()) {
        qFatal("Question %zu is not open", question);
    }
    taken.mapped().addResult(std::move(answer));
    taken.mapped().finish();
}

} // namespace

QFuture<StatusReading> FakeStatusChecks::read(const Service &service)
{
    const auto question = asked_.size();
    asked_.push_back({Kind::read, service.id});
    if (readScript) {
        if (const auto reading = readScript(service.id)) {
            return readyFuture(*reading);
        }
    }
    return leaveOpen(readings_, question);
}

QFuture<bool> FakeStatusChecks::probe(const Service &service)
{
    const auto question = asked_.size();
    asked_.push_back({Kind::probe, service.id});
    if (probeScript) {
        if (const auto isUsable = probeScript(service.id)) {
            return readyFuture(*isUsable);
        }
    }
    return leaveOpen(probes_, question);
}

void FakeStatusChecks::abortAll()
{
    ++aborts_;
    for (const auto question : open(Kind::read)) {
        answerRead(question, {ServiceHealth::unknown, QStringLiteral("aborted")});
    }
    for (const auto question : open(Kind::probe)) {
        answerProbe(question, false);
    }
}

std::vector<ServiceID> FakeStatusChecks::reads() const
{
    std::vector<ServiceID> services;
    for (const auto &question : asked_) {
        if (question.kind == Kind::read) {
            services.push_back(question.service);
        }
    }
    return services;
}

int FakeStatusChecks::count(Kind kind) const
{
    return static_cast<int>(
        std::count_if(asked_.begin(), asked_.end(), [kind](const Question &q) { return q.kind == kind; }));
}

std::vector<FakeStatusChecks::Number> FakeStatusChecks::open(Kind kind) const
{
    std::vector<Number> numbers;
    const auto collect = [&numbers](const auto &promises) {
        for (const auto &[number, promise] : promises) {
            numbers.push_back(number);
        }
    };
    if (kind == Kind::read) {
        collect(readings_);
    } else {
        collect(probes_);
    }
    return numbers;
}

void FakeStatusChecks::answerRead(Number question, StatusReading reading)
{
    keepPromise(readings_, question, std::move(reading));
}

void FakeStatusChecks::answerProbe(Number question, bool isUsable)
{
    keepPromise(probes_, question, isUsable);
}

void FakeStatusChecks::answer(ServiceID service, ServiceHealth health, const QString &label)
{
    answerRead(oldestOpen({Kind::read, service}), {health, label});
}

void FakeStatusChecks::answerProbe(ServiceID service, bool isUsable)
{
    answerProbe(oldestOpen({Kind::probe, service}), isUsable);
}

void FakeStatusChecks::answerAll(ServiceHealth health)
{
    for (const auto question : open(Kind::read)) {
        answerRead(question, {health, {}});
    }
}

void FakeStatusChecks::drop(Number question)
{
    readings_.extract(question);
    probes_.extract(question);
}

FakeStatusChecks::Number FakeStatusChecks::oldestOpen(Question question) const
{
    for (const auto number : open(question.kind)) {
        if (asked_.at(number) == question) {
            return number;
        }
    }
    qFatal("Nothing open about service %d", static_cast<int>(question.service));
}

} // namespace kelvo
