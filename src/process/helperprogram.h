// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_HELPERPROGRAM_H
#define AUX_PROCESS_HELPERPROGRAM_H

#include "error/reason.h"
#include "fs/regularfile.h"
#include "process/child.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace aux
{

/// One run of a program, which ends with it: nothing that the program has started and that has not
/// left its process group is left. Where the calling thread is killed, the program is, too.
///
/// It does not matter which signals the process blocks or ignores, nor who waits for its children.
class HelperProgram
{
public:
    /// How long it may run, in milliseconds; asked again while it does.
    using Timeout = std::function<qint64()>;
    /// Half a minute, and a second for each 256 KiB that it has to go through, which the slowest
    /// terminal does in less.
    static qint64 timeoutFor(qint64 bytes);

    /// Gives it a descriptor of this process for its input, which else is empty.
    void setInput(int descriptor) { m_input = descriptor; }
    /// Gives it one for its output, which else is kept.
    void setOutput(int descriptor) { m_output = descriptor; }
    /// Gives it one more, under the same number, which is none of a standard stream.
    void inherit(int descriptor) { m_plan.inherited += descriptor; }
    /// Sets a resource limit, RLIMIT_FSIZE or RLIMIT_DATA.
    void limit(int resource, rlim_t bytes) { m_plan.limits += {resource, bytes}; }
    /// Lets what the program has started run on once it has exited: it may be a daemon.
    void leaveOthers() { m_plan.mayLeaveOthers = true; }

    /// Runs it until it exits, with whatever exit status. The reason where it did not: it could not
    /// be started, was killed, or has had its time and is killed.
    Reason run(
        const QString &program, const QStringList &arguments,
        const Timeout &timeout = [] { return timeoutFor(0); });

    bool hasTimedOut() const { return m_end == End::TimedOut; }
    /// Returns whether it has exited with zero.
    bool hasSucceeded() const;
    /// Returns whether this signal has killed it.
    bool wasKilledBy(int signal) const;

    /// What it wrote to its standard streams, the first 8 MiB of each.
    const QByteArray &output() const { return m_written.content; }
    const QByteArray &errors() const { return m_complaints.content; }

private:
    enum class End { Unknown, Reported, TimedOut };

    /// The read end of a pipe, and what came out of it.
    struct Stream {
        Descriptor pipe;
        QByteArray content;
        void takeWhatIsThere();
    };

    int duplicate(int descriptor);
    int openPipe(Stream &stream);
    int start(const QString &program, const QStringList &arguments);
    void waitForEnd(const Timeout &timeout);
    void takeReport();

    int m_input = -1;
    int m_output = -1;
    ChildPlan m_plan;
    std::vector<Descriptor> m_ends; // those that only the child is to have
    Stream m_reports;
    Stream m_written;
    Stream m_complaints;
    pid_t m_group = -1;
    ChildReport m_report;
    End m_end = End::Unknown;
};

} // namespace aux

#endif
