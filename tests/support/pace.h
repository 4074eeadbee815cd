// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_PACE_H
#define AUX_TESTS_PACE_H

#include <QtGlobal>

#include <atomic>
#include <ctime>

#include <dlfcn.h>
#include <poll.h>

/// The library's seconds in one of ours, and since when, in milliseconds: its clock never jumps.
inline std::atomic<int> pace = 1;
inline std::atomic<qint64> paceSince = 0;

/// The system's own function, where a 32-bit machine has two of them the one for this size of time.
template <typename Function>
Function *original(const char *name, const char *for64Bits)
{
    const bool isOther = sizeof(time_t) > sizeof(long);
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, isOther ? for64Bits : name));
}

// The calls of the library find these. An inline one would clash with the system's own.
// NOLINTBEGIN(misc-definitions-in-headers)
extern "C" int clock_gettime(clockid_t clock_id, timespec *tp) noexcept
{
    static const auto real =
        original<decltype(clock_gettime)>("clock_gettime", "__clock_gettime64");
    const int result = real(clock_id, tp);
    if (pace > 1 && clock_id == CLOCK_MONOTONIC) {
        const qint64 now = tp->tv_sec * 1000LL + tp->tv_nsec / 1000000;
        const qint64 ms = paceSince + (now - paceSince) * pace;
        *tp = {static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000 * 1000000)};
    }
    return result;
}

extern "C" int poll(pollfd *fds, nfds_t nfds, int timeout)
{
    static const auto real = original<decltype(poll)>("poll", "poll");
    return real(fds, nfds, timeout < 0 ? timeout : timeout / pace);
}
// NOLINTEND(misc-definitions-in-headers)

/// From now on to its end the library's time goes so many times as fast.
class Pace
{
public:
    explicit Pace(int times)
    {
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        paceSince = now.tv_sec * 1000LL + now.tv_nsec / 1000000;
        pace = times;
    }
    ~Pace() { pace = 1; }
    Pace(const Pace &) = delete;
    Pace &operator=(const Pace &) = delete;
};

#endif
