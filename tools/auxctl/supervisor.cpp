// SPDX-License-Identifier: MIT
#include "supervisor.h"

#include "failure.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

/// The signals that end a program, but for those that its caller had it ignore.
sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler != SIG_IGN)
            sigaddset(&signals, number);
    }
    return signals;
}

/// Waits for the process, which gets every signal that comes meanwhile; returns its status.
int waitFor(pid_t worker, sigset_t signals)
{
    sigaddset(&signals, SIGCHLD);
    int status = 0;
    while (waitpid(worker, &status, WNOHANG) != worker) {
        int number = 0;
        if (sigwait(&signals, &number) == 0 && number != SIGCHLD)
            kill(worker, number);
    }
    return status;
}

[[noreturn]] void endLike(int status, const sigset_t &mask)
{
    if (!WIFSIGNALED(status))
        _exit(WEXITSTATUS(status));
    std::signal(WTERMSIG(status), SIG_DFL);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    raise(WTERMSIG(status));
    _exit(static_cast<int>(ExitStatus::Failed));
}

} // namespace

void supervise(const std::function<void()> &cleanUp)
{
    const sigset_t signals = endingSignals();
    sigset_t blocked = signals;
    sigaddset(&blocked, SIGCHLD);
    sigset_t mask;
    sigprocmask(SIG_BLOCK, &blocked, &mask);
    const pid_t supervisor = getpid();
    const pid_t worker = fork();
    if (worker < 0)
        fail(QStringLiteral("cannot start a process: %1").arg(strerror(errno)));
    if (worker > 0) {
        const int status = waitFor(worker, signals);
        if (WIFSIGNALED(status))
            cleanUp();
        endLike(status, mask);
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != supervisor) // it was killed before that
        _exit(static_cast<int>(ExitStatus::Failed));
    sigprocmask(SIG_SETMASK, &mask, nullptr);
}

} // namespace auxctl
