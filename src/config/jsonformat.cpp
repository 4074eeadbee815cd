// SPDX-License-Identifier: MIT
#include "config/jsonformat.h"
#include "config/replacement.h"

#include <QJsonDocument>

#include <unistd.h>

namespace aux::json
{

namespace
{

constexpr QLatin1Char separator('/');

QJsonValue toJson(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool();
    default:
        return value.toInt();
    }
}

using Visitor = std::function<void(const QString &, const QJsonValue &)>;

void visitBelow(const QString &prefix, const QJsonObject &object, const Visitor &visitor,
                int longest)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString key = prefix.isEmpty() ? member.key() : prefix + separator + member.key();
        if (key.size() > longest)
            continue;
        if (member.value().isObject())
            visitBelow(key, member.value().toObject(), visitor, longest);
        else
            visitor(key, member.value());
    }
}

bool isReadable(const QString &key)
{
    return key.count(separator) < maximumDepth;
}

using Iterator = QSettings::SettingsMap::const_iterator;

/// Nests the run of keys that begin with the prefix; leaves `next` behind the last of them.
QJsonObject nestRun(Iterator &next, Iterator end, const QString &prefix)
{
    QJsonObject object;
    while (next != end && next.key().startsWith(prefix)) {
        const QString &key = next.key();
        const int cut = key.indexOf(separator, prefix.size());
        if (!isReadable(key)) {
            ++next;
        } else if (cut < 0) {
            object.insert(key.mid(prefix.size()), toJson(next.value()));
            ++next;
        } else {
            const QString name = key.mid(prefix.size(), cut - prefix.size());
            object.insert(name, nestRun(next, end, key.left(cut + 1)));
        }
    }
    return object;
}

} // namespace

QVariant toVariant(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    if (value.isBool())
        return value.toBool();
    return value.toInt();
}

void visit(const QJsonObject &object, const Visitor &visitor, int longest)
{
    visitBelow({}, object, visitor, longest);
}

QSettings::SettingsMap flatten(const QJsonObject &object)
{
    QSettings::SettingsMap settings;
    visit(object, [&](const QString &key, const QJsonValue &value) {
        settings.insert(key, toVariant(value));
    });
    return settings;
}

QJsonObject nest(const QSettings::SettingsMap &settings)
{
    Iterator next = settings.begin();
    return nestRun(next, settings.end(), {});
}

QSettings::SettingsMap parse(const QByteArray &text)
{
    return flatten(QJsonDocument::fromJson(text).object());
}

QByteArray toText(const QSettings::SettingsMap &settings)
{
    return QJsonDocument(nest(settings)).toJson();
}

bool readSettings(QIODevice &device, QSettings::SettingsMap &settings)
{
    settings = parse(device.readAll());
    return true;
}

bool writeSettings(QIODevice &device, const QSettings::SettingsMap &settings)
{
    const QByteArray text = toText(settings);
    if (auto *file = qobject_cast<QSaveFile *>(&device))
        static_cast<void>(writeReplacement(*file, text));
    else
        device.write(text);
    ::sync();
    return true;
}

} // namespace aux::json
