// SPDX-License-Identifier: MIT
#include "openpgp/keyring.h"
#include "fs/newfile.h"
#include "process/helperprogram.h"
#include "process/processes.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

const QString Keyring::path = QStringLiteral("/tmp/gpg-temp-keyring");
const Reason Keyring::noKey = QStringLiteral("no key is imported");
const Reason Keyring::noRoom = QStringLiteral("no room in %1").arg(path);

namespace
{

constexpr int enoughRoom = 64 * 1024;      // bytes
constexpr int longestTurn = 5 * 60 * 1000; // ms that are waited for others

const Reason foreign = QStringLiteral("%1 is not this program's own directory").arg(Keyring::path);
const Reason notMade = QStringLiteral("%1 cannot be made").arg(Keyring::path);
const Reason notRemoved = QStringLiteral("%1 cannot be removed").arg(Keyring::path);
const Reason inUse = QStringLiteral("%1 is in use").arg(Keyring::path);

/// Where an operation was killed, the agent that it leaves behind would else go on to decrypt
/// without being asked for a pass phrase. It needs no cards either.
const QByteArray agentOptions = "default-cache-ttl 0\n"
                                "max-cache-ttl 0\n"
                                "disable-scdaemon\n";

QByteArray encodedPath()
{
    return QFile::encodeName(Keyring::path);
}

/// Waits for a lock that its holder gives up, or that the kernel takes from it when it dies.
bool awaitLock(const Descriptor &file)
{
    bool isLocked = false;
    const auto isDecided = [&] {
        isLocked = ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
        return isLocked || (errno != EWOULDBLOCK && errno != EINTR);
    };
    return waitUntil(isDecided, longestTurn) && isLocked;
}

/// A process forked meanwhile has the lock too, and would keep it.
void unlock(const Descriptor &file)
{
    ::flock(file.number(), LOCK_UN);
}

Reason clear()
{
    bool isClear = true;
    const auto entries =
        QDir(Keyring::path)
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString name = entry.filePath();
        isClear &= entry.isDir() && !entry.isSymLink() ? QDir(name).removeRecursively()
                                                       : QFile::remove(name);
    }
    return isClear ? Reason() : notRemoved;
}

/// Flushed before a key comes: where /tmp outlasts a power cut, no key is there without them.
Reason writeAgentOptions()
{
    NewFile file(Keyring::path + QStringLiteral("/gpg-agent.conf"));
    return file.open() && file.write(agentOptions) && file.commit() ? Reason()
                                                                    : notMade.because(file.cause());
}

} // namespace

Keyring::~Keyring()
{
    if (m_directory.isOpen())
        unlock(m_directory);
}

Reason Keyring::requireKeyring()
{
    Reason reason = takeTurn(Missing::Refuse);
    return reason.isNone() ? stopAgents() : reason;
}

Reason Keyring::make()
{
    Reason reason = takeTurn(Missing::Make);
    if (reason.isNone())
        reason = stopAgents();
    if (reason.isNone())
        reason = clear();
    return reason.isNone() ? writeAgentOptions() : reason;
}

Reason Keyring::remove()
{
    Reason reason = stopAgents();
    if (!reason.isNone())
        return reason;
    HelperProgram gpgconf; // where /run has a directory for this user, it has one for the sockets
    static_cast<void>(
        gpgconf.run(QStringLiteral("gpgconf"),
                    {QStringLiteral("--homedir"), path, QStringLiteral("--remove-socketdir")}));
    return QDir(path).removeRecursively() ? Reason() : notRemoved;
}

Reason Keyring::stopAgents()
{
    // gpg names the home directory to everything that it starts.
    return endProcessesWith("--homedir", encodedPath())
               ? Reason()
               : QStringLiteral("gpg-agent cannot be ended");
}

bool Keyring::hasRoom()
{
    NewFile file(path + QStringLiteral("/room"));
    return file.open() && file.hasRoom(enoughRoom);
}

Reason Keyring::takeTurn(Missing missing)
{
    do {
        Reason reason = open(missing);
        if (!reason.isNone())
            return reason;
        // Who has just given the turn up waits for the next one behind all who wait already.
        const Descriptor queue(::openat(m_directory.number(), "queue",
                                        O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC,
                                        S_IRUSR | S_IWUSR));
        const bool isFirst = !queue.isOpen() || awaitLock(queue);
        const bool isLocked = isFirst && awaitLock(m_directory);
        unlock(queue);
        if (!isLocked)
            return inUse;
    } while (!hasName()); // whoever had it before may have removed it
    return {};
}

Reason Keyring::open(Missing missing)
{
    do {
        if (missing == Missing::Make && ::mkdir(encodedPath().constData(), S_IRWXU) != 0 &&
            errno != EEXIST)
            return notMade.because(path, errno);
        m_directory = Descriptor(
            ::open(encodedPath().constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    } while (missing == Missing::Make && !m_directory.isOpen() && errno == ENOENT);
    if (!m_directory.isOpen())
        return errno == ENOENT ? noKey : foreign.because(path, errno);
    struct stat status {
    };
    ::fstat(m_directory.number(), &status);
    const bool isPrivate = (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    return isPrivate && status.st_uid == ::geteuid()
               ? Reason()
               : foreign.because(path, QStringLiteral("another user's, or open to others"));
}

/// Returns whether the open directory still is the one of this name.
bool Keyring::hasName() const
{
    struct stat opened {
    };
    struct stat named {
    };
    return ::fstat(m_directory.number(), &opened) == 0 &&
           ::lstat(encodedPath().constData(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

} // namespace aux
