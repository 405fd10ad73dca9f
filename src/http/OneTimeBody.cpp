#include "http/OneTimeBody.h"

#include <algorithm>

namespace kelvo {

OneTimeBody::OneTimeBody(const QByteArray &content, QObject *parent)
    : QIODevice(parent)
    , content_(content)
{
    // Unbuffered, so that pos() is the position of readData().
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneTimeBody::readData(char *data, qint64 maximumSize)
{
    const qint64 size = std::min(maximumSize, content_.size() - pos());
    std::copy_n(content_.constData() + pos(), size, data);
    return size;
}

qint64 OneTimeBody::writeData(const char *, qint64)
{
    return -1;
}

} // namespace kelvo
