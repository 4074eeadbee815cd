// SPDX-License-Identifier: MIT
// Works on /data, and marks on its disk what it begins and what libaux has confirmed:
// workload MARKS OFFSET OPERATION
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include "crashes/settingssteps.h"
#include "support/othermachine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <functional>
#include <utility>

#include <unistd.h>

using aux::DataHelper;
using aux::DirLocation;
using aux::FsHelper;
using Operation = std::function<void()>;

namespace
{

QString checksumOf(const QString &path)
{
    const auto [error, checksum] = FsHelper::generateChecksum(path);
    require(error);
    return checksum;
}

// --- containers ---------------------------------------------------------------------------------

void makeDirectories()
{
    QDir().mkpath(FsHelper::dirLocationToFullPath(DirLocation::New));
    QDir().mkpath(FsHelper::dirLocationToFullPath(DirLocation::Archive));
}

QString containerIn(DirLocation location, int number)
{
    return FsHelper::createPathName(location, QStringLiteral("%1.bin").arg(number));
}

QString factOf(int number)
{
    return QStringLiteral("container %1").arg(number);
}

/// Packing alone confirms nothing.
void pack(int number, const QString &elsewhere = {})
{
    began(factOf(number), {elsewhere + "new", elsewhere + "new:broken"});
    const QString payload = QStringLiteral("/tmp/%1").arg(number);
    write(payload, QByteArray(number * 7919 % 100000, 'x')); // some bytes to a hundred kilobytes
    require(DataHelper::packFileToBinContainer(payload, DataHelper::ZEL_FILE_TYPE::DDDF,
                                               containerIn(DirLocation::New, number)));
    QFile::remove(payload);
}

void keep(int number)
{
    pack(number);
    ::sync();
    confirmed(factOf(number), "new");
}

void move(int number)
{
    const QString container = containerIn(DirLocation::New, number);
    began(factOf(number));
    require(FsHelper::fileMove(DirLocation::New, DirLocation::Archive, container,
                               checksumOf(container), true, {}));
    confirmed(factOf(number), "archive");
}

void moveDuplicate(int number)
{
    pack(number, "archive ");
    move(number);
}

/// A mover is killed when it has renamed the file; then the file comes once more.
void moveAfterKill(int number)
{
    began(factOf(number), {"archive"});
    if (!QFile::rename(containerIn(DirLocation::New, number),
                       containerIn(DirLocation::Archive, number)))
        qFatal("cannot rename");
    moveDuplicate(number);
}

/// Another program has copied the file, and not flushed it: the source is the only copy that lasts.
void moveCopied(int number)
{
    began(factOf(number), {"archive new", "archive:broken new"});
    write(containerIn(DirLocation::Archive, number), read(containerIn(DirLocation::New, number)));
    move(number);
}

// --- OpenPGP ------------------------------------------------------------------------------------

void importKey()
{
    const QString home = QStringLiteral("/tmp/keys-%1").arg(::getpid()); // no other agent's
    clear(home);
    QFile::setPermissions(home, QFileDevice::Permissions(0x7000)); // owner: read, write, enter
    othermachine::gpg({"--generate-key"},
                      othermachine::ed25519 + othermachine::cv25519 +
                          "Name-Real: Terminal\n%no-protection\n%commit\n",
                      {}, home);
    write("/tmp/key", othermachine::gpg({"--export-secret-keys"}, {}, {}, home));
    require(DataHelper::importKeypairGPG("/tmp/key"));
    write("/tmp/plain", QByteArray(50000, 'x'));
}

using Crypt = aux::Error (*)(const QString &, const QString &);

void crypt(const QString &from, const QString &name, Crypt operation)
{
    const QString fact = "file " + name;
    const QString to = "/data/" + name;
    began(fact);
    require(operation(from, to));
    confirmed(fact, checksumOf(to));
}

void encrypt()
{
    crypt("/tmp/plain", "cipher", DataHelper::encryptFileGPG);
}

void decrypt()
{
    crypt("/data/cipher", "opened", [](const QString &from, const QString &to) {
        return DataHelper::decryptFileGPG(from, to, {});
    });
}

void reset(const QStringList &files)
{
    const QStringList facts = files + QStringList{"settings", "commits"};
    for (const QString &fact : facts)
        began(fact);
    require(FsHelper::removeEntireDataDir());
    for (const QString &fact : facts)
        confirmed(fact, "absent");
}

/// For so many milliseconds, with a pause after each round.
void mix(int duration, unsigned long pause)
{
    QElapsedTimer timer;
    timer.start();
    importKey();
    QStringList files;
    for (int number = 1; timer.elapsed() < duration; ++number) {
        files += factOf(number);
        set(number);
        commit();
        pack(number);
        move(number);
        if (number % 2 == 0)
            moveDuplicate(number);
        if (number % 3 == 0)
            rollback(number);
        if (number % 5 == 0) {
            encrypt();
            decrypt();
        }
        if (number % 10 == 0) {
            reset(std::exchange(files, {}));
            makeDirectories();
        }
        QThread::msleep(pause);
    }
}

/// What is there before an operation, and the operation.
struct Row {
    Operation prepare;
    Operation operate;
};

const QMap<QString, Row> operations{
    {"first", {[] {}, [] { set(1); }}},
    {"set", {[] { set(1); }, [] { set(2); }}},
    {"commit", {[] { configuration(), set(1); }, commit}},
    {"rollback", {[] { set(1); }, [] { rollback(1); }}},
    {"apply", {makeCandidate, apply}},
    {"turns", {[] {}, takeTurns}},
    {"pack", {[] {}, [] { pack(9), move(9); }}},
    {"move", {[] { keep(9); }, [] { move(9); }}},
    {"duplicate", {[] { pack(9), move(9); }, [] { moveDuplicate(9); }}},
    {"killed", {[] { keep(9); }, [] { moveAfterKill(9); }}},
    {"copied", {[] { keep(9); }, [] { moveCopied(9); }}},
    {"encrypt", {importKey, encrypt}},
    {"decrypt", {[] { importKey(), encrypt(); }, decrypt}},
    {"reset", {[] { pack(1), move(1), set(1), commit(); }, [] { reset({factOf(1)}); }}},
    {"brief", {[] {}, [] { mix(5000, 0); }}}, // all of them, one after another
    {"mix", {[] {}, [] { mix(60000, 1000); }}},
};

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4 || !operations.contains(argv[3]))
        qFatal("usage: workload MARKS OFFSET %s", qPrintable(operations.keys().join('|')));
    QCoreApplication::setOrganizationName(QStringLiteral("aux"));
    QCoreApplication::setApplicationName(QStringLiteral("terminal"));
    markAt(argv[1], QString(argv[2]).toLongLong());
    makeDirectories();
    ::sync();
    const Row &row = operations[argv[3]];
    row.prepare();
    row.operate();
    mark({"ended"});
}
