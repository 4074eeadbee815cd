// SPDX-License-Identifier: MIT
#include "data/helperprogram.h"

#include <csignal>
#include <limits>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr qint64 startUp = 30000;
constexpr qint64 bytesPerSecond = 256LL * 1024;

} // namespace

HelperProgram::HelperProgram()
{
    setStandardInputFile(nullDevice());
}

HelperProgram::~HelperProgram()
{
    killAll();
}

void HelperProgram::connectFiles(int input, int output)
{
    m_input = input;
    m_output = output;
}

Reason HelperProgram::run(const QString &program, const QStringList &arguments, int patience)
{
    start(program, arguments);
    if (!waitForStarted(patience))
        return program + QStringLiteral(" cannot be started");
    if (!waitForFinished(patience) && state() != NotRunning) {
        killAll();
        return program + QStringLiteral(" did not end in time");
    }
    return exitStatus() == CrashExit ? program + QStringLiteral(" was killed") : Reason();
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
    for (const int descriptor : qAsConst(m_lent))
        ::fcntl(descriptor, F_SETFD, 0);
}

void HelperProgram::killAll()
{
    if (state() == NotRunning)
        return;
    ::kill(-static_cast<pid_t>(processId()), SIGKILL);
    waitForFinished();
}

int patienceFor(qint64 bytes)
{
    const qint64 patience = startUp + bytes / bytesPerSecond * 1000;
    return static_cast<int>(qMin<qint64>(patience, std::numeric_limits<int>::max()));
}

} // namespace aux
