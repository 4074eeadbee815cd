// SPDX-License-Identifier: MIT
// Checksums, containers and moves against the least work that does the same. Needs a /data of its
// own: kit/sandbox build/release/bench/bench_files
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include "ratios.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <sys/resource.h>
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
constexpr long memoryLimitKiB = 20L * 1024;

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
    for (qint64 written = 0; written < size; written += piece.size())
        check(output.write(piece) == piece.size(), "write");
}

void checksum(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        check(!FsHelper::generateChecksum(file).first.hasError(), "checksum");
}

void bareHash(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        QCryptographicHash hash(QCryptographicHash::Sha256);
        QFile input(file);
        check(input.open(QIODevice::ReadOnly) && hash.addData(&input), "hash");
        benchmark::DoNotOptimize(hash.result());
    }
}

void plainCopy(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        QFile::remove(copy);
        check(QFile::copy(file, copy), "copy");
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

void move(benchmark::State &state)
{
    aux::DirLocation from = aux::DirLocation::New;
    aux::DirLocation to = aux::DirLocation::Archive;
    const QString name = QStringLiteral("file");
    for ([[maybe_unused]] auto _ : state) {
        check(!FsHelper::fileMove(from, to, name, {}, false, {}).hasError(), "move");
        std::swap(from, to);
    }
    if (from == aux::DirLocation::Archive)
        check(!FsHelper::fileMove(from, to, name, {}, false, {}).hasError(), "move back");
}

void renameAndSync(benchmark::State &state)
{
    const QByteArray there = QFile::encodeName(inArchive + QStringLiteral("/file"));
    const QByteArray here = QFile::encodeName(file);
    bool isHere = true;
    for ([[maybe_unused]] auto _ : state) {
        check(std::rename(isHere ? here : there, isHere ? there : here) == 0, "rename");
        ::sync();
        isHere = !isHere;
    }
    if (!isHere)
        check(std::rename(there, here) == 0, "rename back");
}

/// Packs a large file in a process of its own; its greatest size in KiB.
long memoryOfPacking()
{
    const QString huge = inNew + QStringLiteral("/huge");
    fill(huge, hugeSize);
    const pid_t child = fork();
    if (child == 0) {
        const aux::Error error =
            DataHelper::packFileToBinContainer(huge, DataHelper::ZEL_FILE_TYPE::DDDF, container);
        _exit(error.hasError() ? 1 : 0);
    }
    int status = 0;
    rusage usage{};
    check(wait4(child, &status, 0, &usage) == child && status == 0, "packing the large file");
    QFile::remove(huge);
    return usage.ru_maxrss;
}

} // namespace

int main(int argc, char **argv)
{
    check(QDir().mkpath(inNew) && QDir().mkpath(inArchive), "making directories");
    const long memory = memoryOfPacking();
    fill(file, fileSize);
    const auto add = [](const char *name, void (*function)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond)->UseRealTime();
    };
    add("bareHash", bareHash);
    add("checksum", checksum);
    add("plainCopy", plainCopy);
    add("pack", pack);
    add("unpack", unpack);
    add("renameAndSync", renameAndSync);
    add("move", move);
    const int status = bench::run(
        argc, argv,
        {{"generateChecksum to bare hash", "checksum", {"bareHash"}, 1.05, false},
         {"pack to checksum and copy", "pack", {"checksum", "plainCopy"}, 1.15, false},
         {"unpack to checksum and copy", "unpack", {"checksum", "plainCopy"}, 1.15, false},
         {"fileMove to rename and sync", "move", {"renameAndSync"}, 1.1, false}});
    const bool small = memory < memoryLimitKiB;
    std::printf("peak memory of packing 1 GiB: %ld KiB, %s %ld KiB\n", memory,
                small ? "below" : "MISSES", memoryLimitKiB);
    return small ? status : 1;
}
