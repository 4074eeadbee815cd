// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_WAITING_H
#define AUX_TESTS_WAITING_H

#include <QtGlobal>

#include <ctime>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

/// What the library waits for with poll() in this program: the longest time that it asked for, in
/// milliseconds. Where it is skipped, the time passes on the clock alone.
struct Waiting {
    int longest = 0;
    bool skipsPrograms = false;
    bool skipsPauses = false;
    qint64 skipped = 0;
};
inline Waiting waiting;

// The calls of the library find these. An inline one would clash with the system's own.
// NOLINTBEGIN(misc-definitions-in-headers)
extern "C" int poll(pollfd *files, nfds_t count, int timeout)
{
    waiting.longest = qMax(waiting.longest, timeout);
    timespec time{timeout / 1000, timeout % 1000 * 1000000L};
    if (count > 0 ? waiting.skipsPrograms : waiting.skipsPauses) {
        waiting.skipped += timeout;
        time = {};
    }
    return ::ppoll(files, count, timeout < 0 ? nullptr : &time, nullptr);
}

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const auto result = static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_MONOTONIC && ::gettid() == ::getpid()) // QTest's own watch goes right
        time->tv_sec += waiting.skipped / 1000;
    return result;
}
// NOLINTEND(misc-definitions-in-headers)

#endif
