#include "FakeSessionManager.h"

#include <QSocketNotifier>

// These headers define macros such as Bool and Status, so they come last.
#include <X11/SM/SMlib.h>

namespace kelvo {

struct FakeSessionManager::Connections
{
    int count = 0;
    IceListenObj *listeners = nullptr;
    std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
    IceConn connection = nullptr;
    SmsConn client = nullptr;
    bool isSaved = false;
    QHash<QByteArray, QByteArray> properties;

    void accept(IceListenObj listener)
    {
        IceAcceptStatus status = IceAcceptFailure;
        connection = IceAcceptConnection(listener, &status);
        if (status == IceAcceptSuccess) {
            watch(IceConnectionNumber(connection), [this] { read(); });
        }
    }

    void read()
    {
        if (connection && IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError) {
            notifiers.back()->setEnabled(false);
            IceSetShutdownNegotiation(connection, False);
            IceCloseConnection(connection);
            connection = nullptr;
            client = nullptr;
        }
    }

    template<typename Function>
    void watch(int descriptor, Function function)
    {
        notifiers.push_back(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read));
        QObject::connect(notifiers.back().get(), &QSocketNotifier::activated, function);
    }

    void save(Bool shutdown)
    {
        isSaved = false;
        SmsSaveYourself(client, SmSaveBoth, shutdown, SmInteractStyleNone, False);
    }

    static Connections &of(SmPointer data) { return *static_cast<Connections *>(data); }

    static Status onNewClient(SmsConn client, SmPointer data, unsigned long *mask, SmsCallbacks *callbacks, char **)
    {
        of(data).client = client;
        *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
            | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask
            | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask
            | SmsGetPropertiesProcMask;
        callbacks->register_client = {&onRegister, data};
        callbacks->interact_request = {[](SmsConn, SmPointer, int) { }, data};
        callbacks->interact_done = {[](SmsConn, SmPointer, Bool) { }, data};
        callbacks->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) { }, data};
        callbacks->save_yourself_phase2_request = {[](SmsConn each, SmPointer) { SmsSaveYourselfPhase2(each); }, data};
        callbacks->save_yourself_done = {&onSaved, data};
        callbacks->close_connection = {[](SmsConn, SmPointer, int, char **) { }, data};
        callbacks->set_properties = {&onSetProperties, data};
        callbacks->delete_properties = {[](SmsConn, SmPointer, int, char **) { }, data};
        callbacks->get_properties = {[](SmsConn each, SmPointer) { SmsReturnProperties(each, 0, nullptr); }, data};
        return 1;
    }

    // The protocol requires a first request to save right after the registration.
    static Status onRegister(SmsConn client, SmPointer, char *previous)
    {
        if (previous) {
            std::free(previous);
            return 0;
        }
        char *id = SmsGenerateClientID(client);
        SmsRegisterClientReply(client, id);
        std::free(id);
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
        return 1;
    }

    static void onSaved(SmsConn client, SmPointer data, Bool)
    {
        of(data).isSaved = true;
        SmsSaveComplete(client);
    }

    static void onSetProperties(SmsConn, SmPointer data, int count, SmProp **properties)
    {
        for (int i = 0; i < count; ++i) {
            const auto &property = *properties[i];
            if (property.num_vals > 0) {
                const auto &value = property.vals[0];
                of(data).properties.insert(property.name, {static_cast<const char *>(value.value), value.length});
            }
            SmFreeProperty(properties[i]);
        }
        std::free(properties);
    }
};

FakeSessionManager::FakeSessionManager()
    : connections_(std::make_unique<Connections>())
{
    // The default handler ends the process when a client is gone.
    IceSetIOErrorHandler([](IceConn) { });
    char error[256] = {};
    const auto anyone = [](char *) -> Bool { return True; };
    auto &all = *connections_;
    if (!SmsInitialize("Kelvo", "1", &Connections::onNewClient, &all, anyone, sizeof error, error)
        || !IceListenForConnections(&all.count, &all.listeners, sizeof error, error)) {
        qFatal("The session manager does not start: %s", error);
    }
    for (int i = 0; i < all.count; ++i) {
        IceSetHostBasedAuthProc(all.listeners[i], anyone);
        all.watch(IceGetListenConnectionNumber(all.listeners[i]),
                  [&all, listener = all.listeners[i]] { all.accept(listener); });
    }
}

FakeSessionManager::~FakeSessionManager()
{
    connections_->notifiers.clear();
    IceFreeListenObjs(connections_->count, connections_->listeners);
}

QString FakeSessionManager::address() const
{
    char *list = IceComposeNetworkIdList(connections_->count, connections_->listeners);
    const auto address = QString::fromLocal8Bit(list);
    std::free(list);
    return address;
}

bool FakeSessionManager::hasClient() const
{
    return connections_->client;
}

bool FakeSessionManager::isSaved() const
{
    return connections_->isSaved;
}

int FakeSessionManager::number(const QByteArray &property) const
{
    const auto value = connections_->properties.value(property);
    return value.isEmpty() ? -1 : static_cast<unsigned char>(value.front());
}

void FakeSessionManager::endSession()
{
    connections_->save(True);
}

void FakeSessionManager::tellToExit()
{
    SmsDie(connections_->client);
}

} // namespace kelvo
