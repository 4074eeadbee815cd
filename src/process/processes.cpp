// SPDX-License-Identifier: MIT
#include "process/processes.h"

#include <QDir>

#include <algorithm>
#include <csignal>

#include <poll.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr int endTimeout = 2000; // ms
constexpr int pollInterval = 10; // ms

/// Returns whether it has let go of everything; its parent may not have asked for it yet.
bool hasEnded(pid_t process)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return true;
    const QByteArray fields = status.readAll(); // number, name in parentheses, state
    return fields.mid(fields.lastIndexOf(')') + 2, 1) == "Z";
}

QByteArrayList commandLine(const QString &process)
{
    QFile file(process + QStringLiteral("/cmdline"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\0') : QByteArrayList();
}

} // namespace

QVector<pid_t> processesWith(const QByteArray &option, const QByteArray &value)
{
    QVector<pid_t> found;
    const QDir processes(QStringLiteral("/proc"));
    const auto entries = processes.entryInfoList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QFileInfo &entry : entries) {
        if (entry.ownerId() != ::geteuid())
            continue;
        const QByteArrayList words = commandLine(entry.filePath());
        const int position = words.indexOf(option);
        if (position >= 0 && words.value(position + 1) == value)
            found += entry.fileName().toInt();
    }
    return found;
}

bool endProcesses(const QVector<pid_t> &processes, int signal)
{
    for (const pid_t process : processes) {
        if (!hasEnded(process))
            ::kill(process, signal);
    }
    return waitUntil(
        [&processes] { return std::all_of(processes.begin(), processes.end(), hasEnded); },
        endTimeout);
}

bool waitUntil(const std::function<bool()> &condition, int milliseconds)
{
    for (int waited = 0; !condition(); waited += pollInterval) {
        if (waited >= milliseconds)
            return false;
        ::poll(nullptr, 0, pollInterval);
    }
    return true;
}

} // namespace aux
