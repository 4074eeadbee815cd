// SPDX-License-Identifier: MIT
#ifndef AUX_FS_DIRECTORY_H
#define AUX_FS_DIRECTORY_H

#include <memory>

#include <dirent.h>

namespace aux
{

/// An open directory of which the entries are read one by one, their names in any bytes.
class Directory
{
public:
    /// Opens it below an open one (or AT_FDCWD); false with errno. With O_NOFOLLOW no link is
    /// followed.
    bool open(int parent, const char *name, int flags = 0);

    int descriptor() const { return ::dirfd(m_stream.get()); }
    /// Returns the next entry but "." and ".."; null at the end with an errno of 0, or with the one
    /// of the failure.
    const dirent *next();
    /// Begins anew.
    void rewind() { ::rewinddir(m_stream.get()); }

private:
    struct Closing {
        void operator()(DIR *stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Closing> m_stream;
};

} // namespace aux

#endif
