// SPDX-License-Identifier: MIT
#include "config/replacement.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

#include <unistd.h>

namespace aux
{

namespace
{

void makeLaterThan(const QFileInfo &old, QSaveFile &file)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    file.setFileTime(std::max(now, old.lastModified().toUTC().addMSecs(1)),
                     QFileDevice::FileModificationTime);
}

} // namespace

void writeReplacement(QIODevice &device, const QByteArray &text)
{
    auto *file = qobject_cast<QSaveFile *>(&device);
    if (file == nullptr) {
        device.write(text);
        return;
    }
    const QFileInfo old(file->fileName());
    if (!old.exists())
        file->setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const bool isWritten = file->write(text) == text.size() && file->flush();
    if (old.exists())
        makeLaterThan(old, *file); // after the last byte, which sets the time too
    if (!isWritten || ::fsync(file->handle()) != 0)
        file->cancelWriting();
}

} // namespace aux
