// SPDX-License-Identifier: MIT
#include "commands.h"
#include "settings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <climits>

namespace auxctl
{

namespace
{

using aux::SettingsCode;

QJsonObject text(const QString &pattern)
{
    return {{"type", "string"}, {"pattern", pattern}};
}

/// The settings of which more is checked than their type.
QJsonObject form(const Setting &setting)
{
    switch (setting.code) {
    case SettingsCode::DevicePin:
        return text("^(.{64})?$");
    case SettingsCode::CryptoGpgkey:
        return text("^([\\s\\S]{64,})?$");
    case SettingsCode::CryptoVendors:
        return text("^([^:;]*:[^:;]*(;[^:;]*:[^:;]*)*)?$");
    case SettingsCode::NetworkDataport: // 9000 belongs to the terminal itself
        return {{"type", "integer"},
                {"minimum", 0},
                {"maximum", INT_MAX},
                {"not", QJsonObject{{"const", 9000}}}};
    default:
        break;
    }
    switch (setting.meta.defaultValue.type()) {
    case QVariant::Bool:
        return {{"type", "boolean"}};
    case QVariant::UInt:
        return {{"type", "integer"}, {"minimum", 0}, {"maximum", INT_MAX}};
    default:
        return {{"type", "string"}};
    }
}

QJsonObject emptyObject()
{
    return {{"type", "object"}, {"properties", QJsonObject()}, {"required", QJsonArray()}};
}

/// Adds a member below the path, with the objects on the way there.
QJsonObject withMember(QJsonObject object, QStringList path, const QJsonObject &leaf)
{
    const QString name = path.takeFirst();
    QJsonObject properties = object["properties"].toObject();
    QJsonArray required = object["required"].toArray();
    if (!required.contains(name))
        required += name;
    properties[name] =
        path.isEmpty()
            ? leaf
            : withMember(properties.contains(name) ? properties[name].toObject() : emptyObject(),
                         path, leaf);
    object["properties"] = properties;
    object["required"] = required;
    return object;
}

/// At least one of the operating modes is on.
QJsonArray someMode()
{
    QJsonArray choices;
    for (const Setting &setting : allSettings()) {
        if (!setting.meta.areas.contains(aux::SettingsArea::Mode))
            continue;
        QJsonObject choice = emptyObject();
        choice =
            withMember(choice, setting.key().split('/', Qt::SkipEmptyParts), {{"const", true}});
        choices += choice;
    }
    return choices;
}

} // namespace

Outcome configSchema(const Invocation &)
{
    QJsonObject schema = emptyObject();
    for (const Setting &setting : allSettings()) {
        QJsonObject leaf = form(setting);
        leaf["default"] = QJsonValue::fromVariant(setting.meta.defaultValue);
        schema = withMember(schema, setting.key().split('/', Qt::SkipEmptyParts), leaf);
    }
    schema["$schema"] = "https://json-schema.org/draft/2020-12/schema";
    schema["title"] = "Settings of a terminal";
    schema["anyOf"] = someMode();
    const QString printed = QString::fromUtf8(QJsonDocument(schema).toJson()).trimmed();
    return {ExitStatus::Done, {}, schema, printed};
}

} // namespace auxctl
