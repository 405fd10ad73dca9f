#pragma once

#include <QIODevice>

namespace kelvo {

/// A request body that can be sent only once. When a connection breaks before the response, the network layer repeats the
/// request up to three times, although the server may have processed it. It does not repeat a request whose body cannot be
/// rewound.
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
