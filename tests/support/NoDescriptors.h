#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kelvo {

/// While this object lives, the process cannot open files or sockets. Those that are open stay usable.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int lowestFree = ::open("/", O_RDONLY | O_CLOEXEC);
        ::close(lowestFree);
        auto limit = before_;
        limit.rlim_cur = static_cast<rlim_t>(lowestFree);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    NoDescriptors(const NoDescriptors &) = delete;
    NoDescriptors &operator=(const NoDescriptors &) = delete;

private:
    rlimit before_{};
};

} // namespace kelvo
