// SPDX-License-Identifier: MIT
#include "config/storedsettings.h"
#include "config/jsonformat.h"
#include "config/replacement.h"
#include "fs/newfile.h"
#include "fs/regularfile.h"
#include "fs/storage.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cerrno>

#include <unistd.h>

namespace aux
{

namespace
{

/// More than QJsonDocument takes.
constexpr qint64 largestFile = 128LL * 1024 * 1024;

Reason keepAside(const QString &path, const QByteArray &text)
{
    NewFile file(path + QStringLiteral(".bad"));
    if (!file.open() || !file.write(text) || !file.commit())
        return reason::cannotCreate.because(file.cause());
    return {};
}

} // namespace

Reason readWhole(const QString &path, QByteArray &text)
{
    if (::access(QFile::encodeName(path).constData(), F_OK) != 0 && errno == ENOENT)
        return {};
    RegularFile file(path);
    if (!file.openForReading())
        return reason::cannotRead.because(file.cause());
    if (file.size() > largestFile)
        return reason::cannotRead.because(path, EFBIG);
    const std::optional<QByteArray> content = file.readUpTo(static_cast<int>(file.size()));
    if (!content)
        return reason::cannotRead.because(file.cause());
    text = *content;
    return {};
}

Reason readToReplace(const QString &path, QSettings::SettingsMap &settings)
{
    QByteArray text;
    Reason reason = readWhole(path, text);
    if (!reason.isNone())
        return reason;
    const QJsonDocument document = QJsonDocument::fromJson(text);
    settings = json::flatten(document.object());
    return document.isObject() || text.isEmpty() ? Reason() : keepAside(path, text);
}

Reason replaceSettings(const QString &path, const QSettings::SettingsMap &settings)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return reason::cannotCreate.because(path, file.errorString());
    Reason reason = writeReplacement(file, json::toText(settings));
    if (!reason.isNone())
        return reason;
    if (!file.commit())
        return reason::cannotWrite.because(path, file.errorString());
    const QString target = QFileInfo(path).canonicalPath();
    if (syncDirectory(target) || errno == EACCES) // one that may not be read is left to sync()
        return {};
    return reason::cannotWrite.because(target, errno);
}

} // namespace aux
