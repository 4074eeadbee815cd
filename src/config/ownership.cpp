// SPDX-License-Identifier: MIT
#include "config/ownership.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

void giveToOwnerOf(const QString &path, int file)
{
    struct stat model {
    };
    if (::stat(QFile::encodeName(path).constData(), &model) != 0 &&
        ::stat(QFile::encodeName(QFileInfo(path).path()).constData(), &model) != 0)
        return;
    static_cast<void>(::fchown(file, model.st_uid, model.st_gid) == 0);
}

} // namespace aux
