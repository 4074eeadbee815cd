// SPDX-License-Identifier: MIT
#ifndef AUX_BENCH_SYSCALLS_H
#define AUX_BENCH_SYSCALLS_H

#include <csignal>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

/// The stops at system calls of a child that runs until it stops itself.
inline long stopsUntilStopped(pid_t child)
{
    long stops = -1;
    int status = 0;
    do {
        ++stops;
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    } while (WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80));
    return stops;
}

/// How many system calls an operation makes, counted in a process of its own; -1 where the machine
/// lets nobody look.
template <typename Operation>
long syscallsOf(Operation operation)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        ::raise(SIGSTOP);
        operation();
        ::raise(SIGSTOP);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status) ||
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0)
        return -1;
    const long ofStopping = stopsUntilStopped(child);
    const long all = stopsUntilStopped(child);
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return (all - ofStopping) / 2; // each stops when it begins and when it ends
}

} // namespace bench

#endif
