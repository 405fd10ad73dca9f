#include "simulator/SimulatedRequest.h"

#include <algorithm>

namespace kelvo {

QByteArray SimulatedRequest::header(const QByteArray &name) const
{
    const auto found = std::ranges::find_if(
        headers, [&](const HttpHeader &header) { return header.name.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->value;
}

} // namespace kelvo
