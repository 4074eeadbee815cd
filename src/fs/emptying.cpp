// SPDX-License-Identifier: MIT
#include "fs/emptying.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

bool isDirectory(int parent, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status {
    };
    return ::fstatat(parent, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace

Emptying::Emptying(Directory directory)
{
    enter(std::move(directory), {});
}

bool Emptying::run()
{
    do {
        for (std::string name = removeUpToDirectory(); !name.empty(); name = removeUpToDirectory())
            descend(name);
    } while (m_levels.size() > 1 && ascend());
    return m_error == 0;
}

/// Removes what is no directory up to the first directory, of which it returns the name.
std::string Emptying::removeUpToDirectory()
{
    bool hasRemoved = true;
    while (hasRemoved) { // some file systems skip names while others are removed
        hasRemoved = false;
        m_current.rewind();
        while (const dirent *entry = m_current.next()) {
            std::string name = entry->d_name;
            if (m_levels.back().kept.count(name) > 0)
                continue;
            if (isDirectory(m_current.descriptor(), *entry))
                return name;
            if (::unlinkat(m_current.descriptor(), name.c_str(), 0) == 0)
                hasRemoved = true;
            else
                keep(name);
        }
    }
    return {};
}

void Emptying::descend(const std::string &name)
{
    const auto open = [&](Directory &child) {
        return child.open(m_current.descriptor(), name.c_str(), O_NOFOLLOW);
    };
    Directory child;
    // What belongs to the caller goes, whatever its mode.
    if (!open(child) &&
        (::fchmodat(m_current.descriptor(), name.c_str(), S_IRWXU, 0) != 0 || !open(child)))
        return keep(name);
    ::fchmod(child.descriptor(), S_IRWXU);
    enter(std::move(child), name);
}

/// Goes back to the directory above and removes the one that was left; false where it cannot.
bool Emptying::ascend()
{
    const std::string name = m_levels.back().name;
    Directory parent;
    if (!parent.open(m_current.descriptor(), "..", O_NOFOLLOW)) {
        keep({});
        return false;
    }
    m_current = std::move(parent);
    m_levels.pop_back();
    if (!isInside(m_levels.back())) { // somebody has moved the directory away meanwhile
        errno = EXDEV;
        keep(name);
        return false;
    }
    if (::unlinkat(m_current.descriptor(), name.c_str(), AT_REMOVEDIR) != 0)
        keep(name);
    return true;
}

void Emptying::enter(Directory directory, const std::string &name)
{
    m_current = std::move(directory);
    struct stat status {
    };
    ::fstat(m_current.descriptor(), &status);
    m_levels.push_back({name, status.st_dev, status.st_ino, {}});
}

bool Emptying::isInside(const Level &level) const
{
    struct stat status {
    };
    return ::fstat(m_current.descriptor(), &status) == 0 && status.st_dev == level.device &&
           status.st_ino == level.inode;
}

void Emptying::keep(const std::string &name)
{
    if (m_error == 0) {
        m_error = errno;
        for (const Level &level : m_levels)
            m_obstacle += QFile::decodeName(level.name.c_str()) + QLatin1Char('/');
        m_obstacle += QFile::decodeName(name.c_str());
    }
    m_levels.back().kept.insert(name);
}

} // namespace aux
