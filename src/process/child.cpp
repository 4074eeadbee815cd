// SPDX-License-Identifier: MIT
#include "process/child.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace aux
{

namespace
{

/// A list of texts in the form that exec takes.
class Words
{
public:
    explicit Words(const QByteArrayList &words) : m_words(words.begin(), words.end())
    {
        for (QByteArray &word : m_words)
            m_pointers.push_back(word.data());
        m_pointers.push_back(nullptr);
    }
    char *const *data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_words;
    std::vector<char *> m_pointers;
};

QByteArrayList environmentInEnglish()
{
    QByteArrayList variables{"LC_ALL=C"};
    for (char **variable = environ; *variable != nullptr; ++variable) {
        if (qstrncmp(*variable, "LC_ALL=", 7) != 0)
            variables += *variable;
    }
    return variables;
}

// From here to startChild() all runs in a child of a process that may have other threads: only
// system calls are safe there.

void dieWith(pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(EXIT_FAILURE);
}

/// A handler of the caller's must not run here; what it ignores a program may need.
void resetSignals()
{
    for (int number = 1; number <= SIGRTMAX; ++number)
        ::signal(number, SIG_DFL);
}

void unblockSignals()
{
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void runProgram(const ChildPlan &plan, const Words &arguments,
                             const Words &environment, int report)
{
    ::dup2(plan.input, STDIN_FILENO);
    ::dup2(plan.output, STDOUT_FILENO);
    ::dup2(plan.errors, STDERR_FILENO);
    for (const int descriptor : plan.inherited)
        ::fcntl(descriptor, F_SETFD, 0);
    for (const auto &[resource, bytes] : plan.limits) {
        const auto which = static_cast<__rlimit_resource>(resource);
        rlimit limit{};
        ::getrlimit(which, &limit);
        limit.rlim_cur = limit.rlim_max = std::min(limit.rlim_cur, bytes);
        ::setrlimit(which, &limit);
    }
    unblockSignals();
    ::execvpe(arguments.data()[0], arguments.data(), environment.data());
    const ChildReport failure{errno, 0};
    static_cast<void>(!::write(report, &failure, sizeof failure));
    ::_exit(EXIT_FAILURE);
}

[[noreturn]] void supervise(const ChildPlan &plan, const Words &arguments, const Words &environment,
                            int report)
{
    resetSignals();
    const pid_t self = ::getpid();
    const pid_t program = ::fork();
    if (program == 0) {
        dieWith(self);
        runProgram(plan, arguments, environment, report);
    }
    ChildReport end{program < 0 ? errno : 0, 0};
    // Nothing of the caller's is kept open: a lock, say, that it gives up meanwhile.
    ::dup2(report, STDIN_FILENO);
    ::close_range(STDIN_FILENO + 1, ~0U, 0);
    while (program > 0 && ::waitpid(program, &end.status, 0) < 0 && errno == EINTR) {
    }
    static_cast<void>(!::write(STDIN_FILENO, &end, sizeof end));
    if (plan.mayLeaveOthers && WIFEXITED(end.status))
        ::_exit(EXIT_SUCCESS);
    ::kill(-self, SIGKILL);
    ::_exit(EXIT_FAILURE);
}

} // namespace

pid_t startChild(const ChildPlan &plan, int report)
{
    const Words arguments(plan.words);
    const Words environment(environmentInEnglish());
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t self = ::getpid();
    const pid_t leader = ::fork();
    if (leader == 0) {
        ::setpgid(0, 0);
        dieWith(self);
        supervise(plan, arguments, environment, report);
    }
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (leader > 0)
        ::setpgid(leader, leader); // whoever is first
    errno = error;
    return leader;
}

} // namespace aux
