// SPDX-License-Identifier: MIT
#include "openpgp/keyring.h"
#include "fs/newfile.h"
#include "process/helperprogram.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

namespace aux::keyring
{

const QString path = QStringLiteral("/tmp/gpg-temp-keyring");
const Reason noKey = QStringLiteral("no key is imported");
const Reason noRoom = QStringLiteral("no room in %1").arg(path);

namespace
{

constexpr int enoughRoom = 64 * 1024;      // bytes
constexpr int endPatience = 2000;          // ms, of a program that was told to end
constexpr unsigned long pollInterval = 10; // ms

const Reason foreign = QStringLiteral("%1 is not this program's own directory").arg(path);

enum class State { Missing, Own, Foreign };

State state()
{
    struct stat status {
    };
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return errno == ENOENT ? State::Missing : State::Foreign;
    const bool isPrivate = (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() && isPrivate ? State::Own
                                                                                : State::Foreign;
}

/// gpg names the home directory to everything that it starts.
bool usesKeyring(const QString &process)
{
    QFile commandLine(process + QStringLiteral("/cmdline"));
    if (!commandLine.open(QIODevice::ReadOnly))
        return false; // it has ended meanwhile
    const QByteArrayList arguments = commandLine.readAll().split('\0');
    const int option = arguments.indexOf("--homedir");
    return option >= 0 && arguments.value(option + 1) == QFile::encodeName(path);
}

/// This user's processes on the keyring.
QVector<pid_t> keyringProcesses()
{
    QVector<pid_t> found;
    const QDir processes(QStringLiteral("/proc"));
    const auto entries = processes.entryInfoList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QFileInfo &entry : entries) {
        if (entry.ownerId() == ::geteuid() && usesKeyring(entry.filePath()))
            found += entry.fileName().toInt();
    }
    return found;
}

/// Returns whether it has let go of everything; its parent may not have asked for it yet.
bool hasEnded(pid_t process)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return true;
    const QByteArray fields = status.readAll(); // number, name in parentheses, state
    return fields.mid(fields.lastIndexOf(')') + 2, 1) == "Z";
}

/// Returns whether all of them have ended in time.
bool haveEnded(const QVector<pid_t> &processes)
{
    const QDeadlineTimer deadline(endPatience);
    while (!std::all_of(processes.begin(), processes.end(), hasEnded)) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(pollInterval);
    }
    return true;
}

void control(const QStringList &request)
{
    HelperProgram gpgconf;
    const QStringList home{QStringLiteral("--homedir"), path};
    // Whether anything is left is looked at afterwards.
    static_cast<void>(gpgconf.run(QStringLiteral("gpgconf"), home + request, [] { return 0; }));
}

} // namespace

Reason requireKeyring()
{
    switch (state()) {
    case State::Missing:
        return noKey;
    case State::Foreign:
        return foreign;
    case State::Own:
        break;
    }
    return stopAgents();
}

bool hasRoom()
{
    NewFile file(path + QStringLiteral("/room"));
    return file.open() && file.hasRoom(enoughRoom);
}

Reason make()
{
    Reason reason = remove();
    if (!reason.isNone())
        return reason;
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0)
        return QStringLiteral("%1 cannot be made").arg(path);
    return {};
}

Reason remove()
{
    if (state() == State::Foreign)
        return foreign;
    Reason reason = stopAgents();
    if (!reason.isNone() || state() == State::Missing)
        return reason;
    control({QStringLiteral("--remove-socketdir")}); // where /run has one for this user
    return QDir(path).removeRecursively() ? Reason()
                                          : QStringLiteral("%1 cannot be removed").arg(path);
}

Reason stopAgents()
{
    const QVector<pid_t> processes = keyringProcesses();
    if (state() == State::Own)
        control({QStringLiteral("--kill"), QStringLiteral("all")});
    if (haveEnded(processes))
        return {};
    for (const pid_t process : processes) {
        if (!hasEnded(process)) // what does not listen any more
            ::kill(process, SIGKILL);
    }
    return haveEnded(processes) ? Reason() : QStringLiteral("gpg-agent cannot be ended");
}

} // namespace aux::keyring
