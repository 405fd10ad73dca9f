#pragma once

#include <QIODevice>

namespace kelvo {

/// A request body that can be sent once. When a connection breaks before the answer, the network layer sends the request
/// again, up to three times; with a body that cannot be rewound it gives up instead, for nobody can tell whether the
/// first one was received and acted upon.
class OneTimeBody : public QIODevice
{
    Q_OBJECT

public:
    explicit OneTimeBody(const QByteArray &content, QObject *parent = nullptr);

    qint64 size() const override { return content_.size(); }
    bool reset() override { return false; }

protected:
    qint64 readData(char *data, qint64 maximumSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QByteArray content_;
};

} // namespace kelvo
