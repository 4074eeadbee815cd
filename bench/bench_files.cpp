// SPDX-License-Identifier: MIT
// Checksums, containers and listings against the least work that does the same, and what is exact:
// the memory of large containers, the system calls of a move. Needs a /data of its own:
// kit/sandbox --empty build/release/bench/bench_files
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include "ratios.h"
#include "syscalls.h"

#include <QDir>
#include <QFile>

#include <array>
#include <functional>

#include <dirent.h>
#include <fcntl.h>
#include <gcrypt.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using aux::DataHelper;
using aux::FsHelper;

namespace
{

const QString inNew = QStringLiteral("/data/zel/rk4/new");
const QString inArchive = QStringLiteral("/data/zel/rk4/archive");
const QString file = inNew + QStringLiteral("/file");
const QString container = inNew + QStringLiteral("/container");
const QString copy = inNew + QStringLiteral("/copy");
constexpr qint64 fileSize = 32LL << 20;
constexpr qint64 hugeSize = 1LL << 30;
constexpr long memoryLimitKiB = 16L * 1024;
constexpr int names = 10000;
constexpr long syscallLimit = 10; // of a move without a checksum

void check(bool good, const char *what)
{
    if (!good)
        qFatal("%s failed", what);
}

void fill(const QString &path, qint64 size)
{
    QFile output(path);
    check(output.open(QIODevice::WriteOnly), "open");
    const QByteArray piece(1 << 20, 'x');
    for (qint64 left = size; left > 0; left -= piece.size())
        check(output.write(piece.data(), qMin<qint64>(left, piece.size())) > 0, "write");
}

void checksum(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        check(!FsHelper::generateChecksum(file).first.hasError(), "checksum");
}

/// Hands a file to a function, in pieces of 64 KiB.
template <typename Function>
void readAll(const QString &path, Function function)
{
    const int input = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    std::array<char, 65536> piece{};
    ssize_t length = 0;
    while ((length = ::read(input, piece.data(), piece.size())) > 0)
        function(piece.data(), length);
    check(length == 0 && ::close(input) == 0, "read");
}

void bareHash(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        gcry_md_hd_t hash = nullptr;
        check(gcry_md_open(&hash, GCRY_MD_SHA256, 0) == 0, "hash");
        readAll(file,
                [hash](const char *data, ssize_t length) { gcry_md_write(hash, data, length); });
        benchmark::DoNotOptimize(*gcry_md_read(hash, GCRY_MD_SHA256));
        gcry_md_close(hash);
    }
}

void plainCopy(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        QFile::remove(copy);
        const int output = ::open(QFile::encodeName(copy).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        readAll(file, [output](const char *data, ssize_t length) {
            check(::write(output, data, length) == length, "write");
        });
        check(::close(output) == 0, "close");
    }
}

void pack(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        check(!DataHelper::packFileToBinContainer(file, DataHelper::ZEL_FILE_TYPE::DDDF, container)
                   .hasError(),
              "pack");
    }
}

void unpack(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        DataHelper::ZEL_FILE_TYPE type{};
        QString name = QStringLiteral("unpacked");
        check(!DataHelper::unpackFileFromBinContainer(container, type, inNew, name).hasError(),
              "unpack");
    }
}

void statAll(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        DIR *directory = ::opendir(QFile::encodeName(inArchive).constData());
        int regular = 0;
        while (const dirent *entry = ::readdir(directory)) {
            struct stat status {
            };
            check(::fstatat(::dirfd(directory), entry->d_name, &status, 0) == 0, "stat");
            regular += S_ISREG(status.st_mode) ? 1 : 0;
        }
        ::closedir(directory);
        check(regular == names, "counting");
    }
}

void count(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        check(FsHelper::getNumberOfDirEntries(aux::DirLocation::Archive).second == names, "count");
}

void list(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        check(FsHelper::createDirList(aux::DirLocation::Archive).second.size() == names, "list");
}

void packHuge()
{
    check(!DataHelper::packFileToBinContainer(inNew + QStringLiteral("/huge"),
                                              DataHelper::ZEL_FILE_TYPE::DDDF, container)
               .hasError(),
          "packing the large file");
}

void unpackHuge()
{
    DataHelper::ZEL_FILE_TYPE type{};
    QString name = QStringLiteral("huge");
    check(!DataHelper::unpackFileFromBinContainer(container, type, inNew, name).hasError(),
          "unpacking the large file");
}

/// The greatest size in KiB of a process that does nothing else.
long memoryOf(void (*operation)())
{
    const pid_t child = fork();
    if (child == 0) {
        operation();
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    check(wait4(child, &status, 0, &usage) == child && status == 0, "measuring memory");
    return usage.ru_maxrss;
}

long syscallsOfMove()
{
    for (const char *path : {"/moved", "/moved.second"})
        fill(inNew + QLatin1String(path), 1);
    const auto move = [](const QString &name) {
        check(!FsHelper::fileMove(aux::DirLocation::New, aux::DirLocation::Archive, name, {}, false,
                                  {})
                   .hasError(),
              "move");
    };
    move(QStringLiteral("moved")); // whatever is done once in a process
    return bench::syscallsOf([&move] { move(QStringLiteral("moved.second")); });
}

/// Prints a figure that is to be at most a limit; returns whether it is.
bool meets(const char *what, long figure, long limit, const char *unit)
{
    const bool met = 0 <= figure && figure <= limit;
    std::printf("%6ld  at most  %ld %s  %s  %s\n", figure, limit, unit, met ? "met   " : "MISSED",
                what);
    return met;
}

} // namespace

int main(int argc, char **argv)
{
    check(QDir().mkpath(inNew) && QDir().mkpath(inArchive), "making directories");
    fill(inNew + QStringLiteral("/huge"), hugeSize);
    const long packing = memoryOf(packHuge);
    QFile::remove(inNew + QStringLiteral("/huge"));
    const long unpacking = memoryOf(unpackHuge);
    QFile::remove(inNew + QStringLiteral("/huge"));
    const long syscalls = syscallsOfMove();
    check(QDir(inArchive).removeRecursively() && QDir().mkpath(inArchive), "emptying");
    for (int i = 0; i < names; ++i)
        fill(inArchive + QStringLiteral("/file%1").arg(i), 0);
    fill(file, fileSize);
    const auto add = [](const char *name, void (*function)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond)->UseRealTime();
    };
    add("bareHash", bareHash);
    add("checksum", checksum);
    add("plainCopy", plainCopy);
    add("pack", pack);
    add("unpack", unpack);
    add("statAll", statAll);
    add("count", count);
    add("list", list);
    bool met =
        bench::run(argc, argv,
                   {{"checksum to bare libgcrypt", "checksum", {"bareHash"}, 1.1, false},
                    {"pack to hash and copy", "pack", {"bareHash", "plainCopy"}, 1.15, false},
                    {"unpack to copy and hash", "unpack", {"plainCopy", "bareHash"}, 1.15, false},
                    {"counting to readdir and fstatat", "count", {"statAll"}, 1.5, false},
                    {"listing to readdir and fstatat", "list", {"statAll"}, 2.5, false}}) == 0;
    met = meets("peak memory of packing 1 GiB", packing, memoryLimitKiB, "KiB") && met;
    met = meets("peak memory of unpacking 1 GiB", unpacking, memoryLimitKiB, "KiB") && met;
    met = meets("system calls of a move", syscalls, syscallLimit, "calls") && met;
    return met ? 0 : 1;
}
