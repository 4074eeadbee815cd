// SPDX-License-Identifier: MIT
#include "process/helperprogram.h"

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr qint64 baseTimeout = 30000; // ms
constexpr qint64 bytesPerSecond = 256LL * 1024;
constexpr qint64 longestPoll = 1000; // ms; the timeout is asked as often
constexpr int contentLimit = 8 * 1024 * 1024;

Descriptor emptyInput()
{
    return Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

/// Why it did not exit by itself.
Reason whyKilled(const QString &program, int status)
{
    if (WIFEXITED(status))
        return {};
    return Reason(QStringLiteral("%1 was killed").arg(program))
        .because(program, QString::fromLatin1(::sigdescr_np(WTERMSIG(status))));
}

} // namespace

qint64 HelperProgram::timeoutFor(qint64 bytes)
{
    return baseTimeout + bytes * 1000 / bytesPerSecond;
}

Reason HelperProgram::run(const QString &program, const QStringList &arguments,
                          const Timeout &timeout)
{
    m_report.startError = start(program, arguments);
    if (m_report.startError == 0) {
        waitForEnd(timeout);
        if (m_end == End::TimedOut)
            ::kill(-m_group, SIGKILL);
        while (::waitpid(m_group, nullptr, 0) < 0 && errno == EINTR) {
        }
        m_written.takeWhatIsThere();
        m_complaints.takeWhatIsThere();
    }
    if (m_report.startError != 0)
        return Reason(QStringLiteral("%1 cannot be started").arg(program))
            .because(program, m_report.startError);
    if (hasTimedOut())
        return QStringLiteral("%1 did not end in time").arg(program);
    return whyKilled(program, m_report.status);
}

bool HelperProgram::hasSucceeded() const
{
    return m_end == End::Reported && m_report.startError == 0 && m_report.status == 0;
}

bool HelperProgram::wasKilledBy(int signal) const
{
    return m_end == End::Reported && WIFSIGNALED(m_report.status) &&
           WTERMSIG(m_report.status) == signal;
}

/// Under a number that is none of a standard stream, also where this process has closed its own.
int HelperProgram::duplicate(int descriptor)
{
    m_ends.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return m_ends.back().number();
}

/// Returns its write end, -1 where there is none.
int HelperProgram::openPipe(Stream &stream)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return -1;
    stream.pipe = Descriptor(ends[0]);
    const Descriptor writeEnd(ends[1]);
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    return duplicate(writeEnd.number());
}

/// Returns 0, or an errno.
int HelperProgram::start(const QString &program, const QStringList &arguments)
{
    for (const QString &word : QStringList(program) + arguments)
        m_plan.words += QFile::encodeName(word);
    m_plan.input = duplicate(m_input < 0 ? emptyInput().number() : m_input);
    m_plan.output = m_output < 0 ? openPipe(m_written) : duplicate(m_output);
    m_plan.errors = openPipe(m_complaints);
    const int reports = openPipe(m_reports);
    if (qMin(qMin(m_plan.input, m_plan.output), qMin(m_plan.errors, reports)) >= 0)
        m_group = startChild(m_plan, reports);
    const int error = m_group < 0 ? errno : 0;
    m_ends.clear();
    return error;
}

void HelperProgram::waitForEnd(const Timeout &timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (m_end == End::Unknown) {
        std::array<pollfd, 3> watched{{{m_reports.pipe.number(), POLLIN, 0},
                                       {m_written.pipe.number(), POLLIN, 0},
                                       {m_complaints.pipe.number(), POLLIN, 0}}};
        const qint64 left = timeout() - timer.elapsed();
        if (left <= 0) {
            m_end = End::TimedOut;
        } else if (::poll(watched.data(), watched.size(),
                          static_cast<int>(qMin(left, longestPoll))) > 0) {
            m_written.takeWhatIsThere();
            m_complaints.takeWhatIsThere();
            m_reports.takeWhatIsThere();
            takeReport();
        }
    }
}

void HelperProgram::takeReport()
{
    if (m_reports.content.size() >= static_cast<int>(sizeof m_report))
        std::memcpy(&m_report, m_reports.content.constData(), sizeof m_report);
    else if (!m_reports.pipe.isOpen())
        m_report.status = SIGKILL; // so was the process between
    else
        return;
    m_end = End::Reported;
}

void HelperProgram::Stream::takeWhatIsThere()
{
    if (!pipe.isOpen())
        return;
    QByteArray piece(::fcntl(pipe.number(), F_GETPIPE_SZ), Qt::Uninitialized);
    const ssize_t length = ::read(pipe.number(), piece.data(), static_cast<size_t>(piece.size()));
    if (length == 0)
        pipe.close();
    piece.truncate(static_cast<int>(std::clamp<ssize_t>(length, 0, contentLimit - content.size())));
    content += piece;
}

} // namespace aux
