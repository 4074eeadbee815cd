// SPDX-License-Identifier: MIT
#include "process/helperprogram.h"

#include <QElapsedTimer>
#include <QFile>

#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr qint64 baseTimeout = 30000; // ms
constexpr qint64 bytesPerSecond = 256LL * 1024;
constexpr int deathPatience = 5000; // ms

/// Lets the end of a child be noticed in a thread that blocks its signal.
class ChildSignal
{
public:
    ChildSignal()
    {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGCHLD);
        pthread_sigmask(SIG_UNBLOCK, &signals, &m_before);
    }
    ~ChildSignal() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    ChildSignal(const ChildSignal &) = delete;
    ChildSignal &operator=(const ChildSignal &) = delete;

private:
    sigset_t m_before{};
};

} // namespace

HelperProgram::HelperProgram()
{
    // Where this process has closed its standard streams, no other file may take their numbers: it
    // would be taken for them, here and in the child.
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) < 0)
            m_own += ::open(QFile::encodeName(nullDevice()).constData(), O_RDWR | O_CLOEXEC);
    }
    setStandardInputFile(nullDevice());
}

HelperProgram::~HelperProgram()
{
    killAll();
    for (const int descriptor : qAsConst(m_own))
        ::close(descriptor);
}

/// Under a number that is none of a standard stream.
int HelperProgram::duplicate(int descriptor)
{
    m_own += ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    return m_own.last();
}

Reason HelperProgram::run(const QString &program, const QStringList &arguments,
                          const std::function<qint64()> &bytes)
{
    const ChildSignal childSignal;
    start(program, arguments);
    if (!waitForStarted())
        return program + QStringLiteral(" cannot be started");
    if (!waitForEnd(bytes)) {
        killAll();
        return program + QStringLiteral(" did not end in time");
    }
    return exitStatus() == CrashExit ? program + QStringLiteral(" was killed") : Reason();
}

bool HelperProgram::waitForEnd(const std::function<qint64()> &bytes)
{
    QElapsedTimer timer;
    timer.start();
    while (state() != NotRunning) {
        const qint64 left = baseTimeout + bytes() * 1000 / bytesPerSecond - timer.elapsed();
        if (left <= 0)
            return false;
        waitForFinished(static_cast<int>(qMin(left, baseTimeout)));
    }
    return true;
}

/// Runs in the child, where only system calls are safe.
void HelperProgram::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (m_input >= 0)
        ::dup2(m_input, STDIN_FILENO);
    if (m_output >= 0)
        ::dup2(m_output, STDOUT_FILENO);
    for (const int descriptor : qAsConst(m_inherited))
        ::fcntl(descriptor, F_SETFD, 0);
}

void HelperProgram::killAll()
{
    if (state() == NotRunning)
        return;
    ::kill(-static_cast<pid_t>(processId()), SIGKILL);
    waitForFinished(deathPatience);
}

} // namespace aux
