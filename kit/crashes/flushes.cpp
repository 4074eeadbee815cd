// SPDX-License-Identifier: MIT
// Preloaded into a program, it changes what the program's flushes do, and when the file system
// commits by itself. Programs that this one starts are left alone.
//
// FLUSHES says what becomes of them:
//   fsync      none does anything
//   directory  those of directories do nothing
//   order      those of data wait until a name has changed
//   N, N+M     the Nth does nothing, nor does the Mth
// COMMITS names a file on the disk that somebody else flushes all the time: before every flush of
// the program, and after every change of a name. That brings names to the disk whose data is not.
// FLUSHES_LIST names a file that gets a line for each flush.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// What the program would have called.
template <typename Function>
Function *real(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

std::string taken(const char *variable)
{
    const char *value = std::getenv(variable);
    return value != nullptr ? value : "";
}

struct Plan {
    const std::string flushes = taken("FLUSHES");
    const std::string list = taken("FLUSHES_LIST");
    const int commits = open(taken("COMMITS").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    std::vector<int> late; // files to flush, -1 for everything
    int count = 0;

    Plan() { unsetenv("LD_PRELOAD"); }
};

Plan &plan()
{
    static Plan thePlan;
    return thePlan;
}

/// Before the program keeps its environment for others.
[[gnu::constructor]] void start()
{
    plan();
}

void commit()
{
    static char number = 0;
    ++number;
    if (plan().commits >= 0 && pwrite(plan().commits, &number, 1, 0) == 1)
        real(fsync, "fsync")(plan().commits);
}

bool isDirectory(int file)
{
    struct stat status {
    };
    return fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
}

void note(const char *name, int file)
{
    if (plan().list.empty())
        return;
    char path[4096] = "";
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    if (file < 0 || readlink(link.c_str(), path, sizeof path - 1) < 0)
        std::strcpy(path, "-");
    if (FILE *list = std::fopen(plan().list.c_str(), "ae")) {
        std::fprintf(list, "%d %s %s\n", plan().count, name, path);
        std::fclose(list);
    }
}

/// Of the disk, and not of all others of the machine.
void flushAll()
{
    const int disk = open("/data", O_RDONLY | O_CLOEXEC);
    real(syncfs, "syncfs")(disk);
    close(disk);
}

void flushLate()
{
    for (const int file : std::exchange(plan().late, {})) {
        if (file < 0) {
            flushAll();
            continue;
        }
        real(fsync, "fsync")(file);
        close(file);
    }
}

/// Tells whether the program's own flush is to be done.
bool isDone(const char *name, int file)
{
    ++plan().count;
    note(name, file);
    commit();
    const std::string &flushes = plan().flushes;
    if (flushes == "order" && (file < 0 || !isDirectory(file))) {
        plan().late.push_back(file < 0 ? -1 : fcntl(file, F_DUPFD_CLOEXEC, 0));
        return false;
    }
    if (flushes == "directory")
        return file < 0 || !isDirectory(file) || std::strcmp(name, "fsync") != 0;
    const std::string number = '+' + std::to_string(plan().count) + '+';
    return flushes != "fsync" && ('+' + flushes + '+').find(number) == std::string::npos;
}

int flush(const char *name, int file, int (*call)(int))
{
    return isDone(name, file) ? call(file) : 0;
}

template <typename... Arguments>
int changeName(int (*call)(Arguments...), Arguments... arguments)
{
    const int result = call(arguments...);
    const int error = errno;
    commit();
    flushLate();
    errno = error;
    return result;
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's are reserved
// names
extern "C" {

int fsync(int file)
{
    return flush("fsync", file, real(fsync, "fsync"));
}

int fdatasync(int file)
{
    return flush("fdatasync", file, real(fdatasync, "fdatasync"));
}

int syncfs(int file) noexcept
{
    const auto call = real(syncfs, "syncfs");
    return isDone("syncfs", file) ? call(file) : 0;
}

void sync() noexcept
{
    if (isDone("sync", -1))
        flushAll();
}

int rename(const char *from, const char *to) noexcept
{
    return changeName(real(rename, "rename"), from, to);
}

int renameat2(int fromDirectory, const char *from, int toDirectory, const char *to,
              unsigned int flags) noexcept
{
    return changeName(real(renameat2, "renameat2"), fromDirectory, from, toDirectory, to, flags);
}

int link(const char *from, const char *to) noexcept
{
    return changeName(real(link, "link"), from, to);
}

int linkat(int fromDirectory, const char *from, int toDirectory, const char *to, int flags) noexcept
{
    return changeName(real(linkat, "linkat"), fromDirectory, from, toDirectory, to, flags);
}

int unlink(const char *path) noexcept
{
    return changeName(real(unlink, "unlink"), path);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
