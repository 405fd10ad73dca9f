#include "support/FakeBackgroundPortal.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/freedesktop/portal/desktop"_s;

} // namespace

FakeBackgroundPortal::FakeBackgroundPortal(const PrivateBus &bus)
    : service_(bus, u"org.freedesktop.portal.Desktop"_s, path, this, QDBusConnection::ExportScriptableSlots)
{
}

void FakeBackgroundPortal::answer(uint response, const QVariantMap &results)
{
    auto signal = QDBusMessage::createSignal(path_, u"org.freedesktop.portal.Request"_s, u"Response"_s);
    signal << response << results;
    service_.connection().send(signal);
}

QDBusObjectPath FakeBackgroundPortal::RequestBackground(const QString &, const QVariantMap &options)
{
    requests_.append(options);
    if (fails_) {
        sendErrorReply(QDBusError::Failed, u"not here"_s);
        return {};
    }
    auto sender = message().service().mid(1).replace(u'.', u'_');
    path_ = path + u"/request/"_s + sender + u'/' + options.value(u"handle_token"_s).toString();
    return QDBusObjectPath(path_);
}

} // namespace kelvo
