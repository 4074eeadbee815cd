// SPDX-License-Identifier: MIT
#include "config/settingsfile.h"
#include "aux/fshelper.h"
#include "config/jsonformat.h"
#include "config/settingslock.h"
#include "config/storedsettings.h"
#include "config/writersturn.h"
#include "fs/storage.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QMutexLocker>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

using Settings = QSettings::SettingsMap;

/// By settings file; what was removed has an invalid value.
QHash<QString, Settings> pendingSettings;
QMutex pendingMutex;

Settings pendingOf(const QString &file)
{
    const QMutexLocker locker(&pendingMutex);
    return pendingSettings.value(file);
}

void addPending(const QString &file, const Settings &changes)
{
    const QMutexLocker locker(&pendingMutex);
    Settings &pending = pendingSettings[file];
    for (auto change = changes.begin(); change != changes.end(); ++change)
        pending.insert(change.key(), *change);
}

void forgetPending(const QString &file)
{
    const QMutexLocker locker(&pendingMutex);
    pendingSettings.remove(file);
}

bool isSame(const QVariant &left, const QVariant &right)
{
    return left.userType() == right.userType() && left == right;
}

/// What has to be done to the old settings to get the new ones.
Settings difference(const Settings &before, const Settings &after)
{
    Settings changes;
    for (auto setting = after.begin(); setting != after.end(); ++setting) {
        if (!isSame(before.value(setting.key()), *setting))
            changes.insert(setting.key(), *setting);
    }
    for (auto setting = before.begin(); setting != before.end(); ++setting) {
        if (!after.contains(setting.key()))
            changes.insert(setting.key(), {});
    }
    return changes;
}

Settings applied(const Settings &changes, Settings settings)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change->isValid())
            settings.insert(change.key(), *change);
        else
            settings.remove(change.key());
    }
    return settings;
}

/// Makes a directory and those above it, the ones below the configuration directory for their owner
/// only.
bool makeDirectory(const QString &path)
{
    if (QFileInfo(path).isDir())
        return true;
    const QString parent = QFileInfo(path).path();
    const QString shared = FsHelper::dirLocationToFullPath(DirLocation::Config);
    const mode_t mode = path.startsWith(shared + QLatin1Char('/')) ? 0700 : 0777;
    if (!makeDirectory(parent) ||
        (::mkdir(QFile::encodeName(path).constData(), mode) != 0 && errno != EEXIST))
        return false;
    return syncDirectory(parent);
}

/// Of a text that is the same as last time nothing is parsed again.
Settings parsed(const QByteArray &text)
{
    static QMutex mutex;
    static QByteArray lastText;
    static Settings lastSettings;
    const QMutexLocker locker(&mutex);
    if (text != lastText) {
        lastSettings = json::parse(text);
        lastText = text;
    }
    return lastSettings;
}

/// Returns why nothing keeps other writers out; there are two locks, and one will do.
Reason reasonToWait(const WritersTurn &turn, const SettingsLock &lock, const QString &file)
{
    if (turn.error() == 0 || lock.isHeld())
        return {};
    return reason::cannotCreate.because(file, turn.error());
}

Reason changeInTurn(const QString &file, const Change &change, WhenNotWritten whenNotWritten)
{
    makeDirectory(QFileInfo(file).path());
    const WritersTurn turn(file);
    const SettingsLock lock(file);
    Settings settings;
    Reason reason = readToReplace(file, settings);
    settings = applied(pendingOf(file), settings);
    const Settings before = settings;
    change(settings);
    if (reason.isNone())
        reason = reasonToWait(turn, lock, file);
    if (reason.isNone())
        reason = replaceSettings(file, settings);
    if (reason.isNone())
        forgetPending(file);
    else if (whenNotWritten == WhenNotWritten::KeepPending)
        addPending(file, difference(before, settings));
    return reason;
}

} // namespace

void useSettingsFile()
{
    // Once: QSettings has room for 16 formats in all and gives none back.
    static const QSettings::Format format = QSettings::registerFormat(
        QStringLiteral("JSON"), json::readSettings, json::writeSettings, Qt::CaseSensitive);
    if (QSettings::defaultFormat() != format) // other threads may be reading it
        QSettings::setDefaultFormat(format);
    QSettings::setPath(format, QSettings::UserScope,
                       FsHelper::dirLocationToFullPath(DirLocation::Config));
    removeAbandonedLock(settingsFileName());
}

QString settingsFileName()
{
    // QSettings opens its file before it can be asked for the name. That of an organisation that
    // nobody has tells where the files are and how they end.
    const QSettings nobody(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("-"));
    const QFileInfo sample(nobody.fileName());
    QString name = QCoreApplication::organizationName();
    if (name.isEmpty())
        name = QStringLiteral("Unknown Organization"); // as QSettings has it
    if (!QCoreApplication::applicationName().isEmpty())
        name += QLatin1Char('/') + QCoreApplication::applicationName();
    return sample.path() + QLatin1Char('/') + name + QLatin1Char('.') + sample.suffix();
}

CurrentSettings::CurrentSettings()
{
    const QString file = settingsFileName();
    const QFileInfo info(file);
    QByteArray text;
    if (info.isFile() || !info.exists()) // QSettings would wait for anything else
        const QSettings sharedWithOthers(file, QSettings::defaultFormat());
    m_reason = readWhole(file, text);
    if (m_reason.isNone())
        m_stored = parsed(text);
    m_pending = pendingOf(file);
}

QVariant CurrentSettings::value(const QString &key, const QVariant &fallback) const
{
    const QString storedKey = key.mid(1); // without the leading "/"
    const auto pending = m_pending.constFind(storedKey);
    if (pending != m_pending.constEnd())
        return pending->isValid() ? *pending : fallback;
    const auto stored = m_stored.constFind(storedKey);
    if (stored != m_stored.constEnd())
        return *stored;
    if (!isComplete())
        return fallback;
    if (!m_fallbacks)
        m_fallbacks.emplace();
    return m_fallbacks->value(key, fallback);
}

QVariant CurrentSettings::value(const Setting &setting) const
{
    return value(setting.keyPath(), setting.defaultValue);
}

Reason changeSettings(const Change &change, WhenNotWritten whenNotWritten)
{
    Reason reason = changeInTurn(settingsFileName(), change, whenNotWritten);
    if (reason.isNone())
        ::sync(); // after the turn: others need not wait for it
    return reason;
}

void syncSettings()
{
    const CurrentSettings current; // writes what is pending elsewhere
    if (!pendingOf(settingsFileName()).isEmpty())
        static_cast<void>(changeSettings([](Settings &) {}));
}

} // namespace aux
