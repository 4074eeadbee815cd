// SPDX-License-Identifier: MIT
#include "process/processes.h"

#include <QDir>
#include <QVector>

#include <csignal>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr int endTimeout = 2000; // ms
constexpr int lookInterval = 10; // ms

struct Search {
    QVector<pid_t> found;
    QStringList wordless;     ///< ended, though nobody has asked for them yet; the kernel's own
    bool hasLostSome = false; ///< gone before they could be looked at
    bool hasSeenSome = false; ///< this process at least, but for want of a descriptor

    /// Whether none has ended since the search before, and may have left another one.
    bool isSure(const Search &before) const { return !hasLostSome && wordless == before.wordless; }
};

Search searchFor(const QByteArray &option, const QByteArray &value)
{
    Search search;
    const QDir processes(QStringLiteral("/proc"));
    const QStringList numbers = processes.entryList({QStringLiteral("[0-9]*")});
    for (const QString &number : numbers) {
        const QFileInfo process(processes, number);
        QFile file(process.filePath() + QStringLiteral("/cmdline"));
        const bool isThere = file.open(QIODevice::ReadOnly);
        search.hasSeenSome |= isThere;
        const QByteArrayList words = isThere ? file.readAll().split('\0') : QByteArrayList();
        const int position = words.indexOf(option);
        if (!isThere)
            search.hasLostSome = true;
        else if (words.value(0).isEmpty())
            search.wordless += number;
        else if (position >= 0 && words.value(position + 1) == value &&
                 process.ownerId() == ::geteuid())
            search.found += number.toInt();
    }
    return search;
}

} // namespace

bool endProcessesWith(const QByteArray &option, const QByteArray &value)
{
    Search search;
    const auto end = [&](int signal) {
        const auto isOver = [&] {
            const Search before = std::exchange(search, searchFor(option, value));
            for (const pid_t process : std::as_const(search.found))
                ::kill(process, signal);
            return search.found.isEmpty() && search.hasSeenSome && search.isSure(before);
        };
        return waitUntil(isOver, endTimeout);
    };
    return end(SIGTERM) || end(SIGKILL) || (search.found.isEmpty() && search.hasSeenSome);
}

bool waitUntil(const std::function<bool()> &condition, int milliseconds)
{
    for (int waited = 0; !condition(); waited += lookInterval) {
        if (waited >= milliseconds)
            return false;
        ::poll(nullptr, 0, lookInterval);
    }
    return true;
}

} // namespace aux
