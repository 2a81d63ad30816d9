#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

namespace ts::pm::test {

/** A full disk, without one: while it lives, no file of this process grows beyond so many bytes. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        signal(SIGXFSZ, SIG_IGN); // so that writing fails instead
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{qMin(bytes, before.rlim_max), before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }

private:
    Q_DISABLE_COPY(FileSizeLimit)
    rlimit before{};
};

} // namespace ts::pm::test
