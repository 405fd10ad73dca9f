#pragma once

#include <QFile>

#include <optional>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace kelvo {

/// The resident memory of this process: how far it has grown at most since this object was made. It works on systems with
/// /proc; on others the growth is nullopt, and so it is under AddressSanitizer, which keeps freed memory.
class PeakMemory
{
public:
    PeakMemory()
    {
#ifndef __SANITIZE_ADDRESS__
#ifdef __GLIBC__
        ::malloc_trim(0); // otherwise memory that was freed before would be used again, unseen
#endif
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (reset.open(QIODevice::WriteOnly) && reset.write("5") == 1) {
            reset.close();
            before_ = kilobytes("VmRSS:");
        }
#endif
    }

    /// In megabytes.
    std::optional<double> growth() const
    {
        const auto peak = kilobytes("VmHWM:");
        return before_ && peak ? std::optional(static_cast<double>(*peak - *before_) / 1024) : std::nullopt;
    }

private:
    static std::optional<qint64> kilobytes(const QByteArray &field)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (file.open(QIODevice::ReadOnly)) {
            for (const auto &line : file.readAll().split('\n')) {
                if (line.startsWith(field)) {
                    return line.mid(field.size()).chopped(3).trimmed().toLongLong();
                }
            }
        }
        return std::nullopt;
    }

    std::optional<qint64> before_;
};

} // namespace kelvo
