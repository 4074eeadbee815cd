// SPDX-License-Identifier: MIT
#include "aux/systemhelper.h"
#include "error/debugline.h"
#include "process/shell.h"

#include <cerrno>

#include <sys/time.h>

namespace aux
{

namespace
{

/// Sets the system's clock; returns the errno.
int setClock(const QDateTime &time)
{
    if (!time.isValid()) // its seconds are 0, the year 1970
        return EINVAL;
    timeval value{};
    value.tv_sec = static_cast<time_t>(time.toSecsSinceEpoch());
    if (value.tv_sec != static_cast<long>(value.tv_sec)) // Qt and hwclock on 32 bits end in 2038
        return EINVAL;
    return ::settimeofday(&value, nullptr) == 0 ? 0 : errno;
}

/// Null where there is nothing to say.
const char *meaningOf(int error)
{
    switch (error) {
    case EFAULT:
        return "One of tv or tz pointed outside the accessible address space.";
    case EINVAL:
        return "Timezone (or something else) is invalid.";
    case EPERM:
        return "The calling process has insufficient privilege to call settimeofday(); under Linux the CAP_SYS_TIME capability is required.";
    default:
        return nullptr;
    }
}

} // namespace

void SystemHelper::setSystemTime(const QDateTime &time)
{
    const int error = setClock(time);
    if (error == 0)
        runInShell(QStringLiteral("hwclock --systohc -u"));
    else if (const char *meaning = meaningOf(error))
        debugLine(meaning);
}

} // namespace aux
