#pragma once

#include <QDir>
#include <QFile>

#include <csignal>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

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

/** While it lives, the permissions of files bind the thread that made it, also if it is root's. */
class Unprivileged
{
public:
    Unprivileged()
    {
        syscall(SYS_capget, &header, before);
        __user_cap_data_struct fewer[] = {before[0], before[1]};
        fewer[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header, fewer);
    }
    ~Unprivileged() { syscall(SYS_capset, &header, before); }

private:
    Q_DISABLE_COPY(Unprivileged)
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before[2]{};
};

/** Makes a directory of this user read-only, or writable again; false if that does not come true. */
[[nodiscard]] inline bool setWritable(const QString &path, bool isWritable)
{
    constexpr auto readOnly = QFile::ReadOwner | QFile::ExeOwner;
    QFile::setPermissions(path, isWritable ? readOnly | QFile::WriteOwner : readOnly);
    const QString probe = QStringLiteral("probe");
    return (QDir(path).mkdir(probe) && QDir(path).rmdir(probe)) == isWritable;
}

} // namespace ts::pm::test
