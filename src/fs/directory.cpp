// SPDX-License-Identifier: MIT
#include "fs/directory.h"
#include "fs/regularfile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>

namespace aux
{

bool Directory::open(int parent, const char *name, int flags)
{
    Descriptor descriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!descriptor.isOpen())
        return false;
    m_stream.reset(::fdopendir(descriptor.number()));
    if (!m_stream)
        return false;
    descriptor.release();
    return true;
}

const dirent *Directory::next()
{
    errno = 0;
    const dirent *entry = ::readdir(m_stream.get());
    while (entry != nullptr &&
           (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0))
        entry = ::readdir(m_stream.get());
    return entry;
}

} // namespace aux
