// SPDX-License-Identifier: MIT
#include "output.h"
#include "settings.h"

#include <QJsonArray>
#include <QJsonObject>

#include <climits>

namespace auxctl
{

namespace
{

using aux::Rule;

QString pattern(const Rule &rule)
{
    switch (rule.kind) {
    case Rule::Kind::Length:
        return QStringLiteral("^([\\s\\S]{%1})?$").arg(rule.number);
    case Rule::Kind::MinimumLength:
        return QStringLiteral("^([\\s\\S]{%1,})?$").arg(rule.number);
    case Rule::Kind::IdList:
        return "^([^:;]*:[^:;]*(;[^:;]*:[^:;]*)*)?$";
    default:
        return {};
    }
}

QJsonObject form(const Setting &setting)
{
    QJsonObject form{{"default", QJsonValue::fromVariant(setting.defaultValue)}};
    switch (setting.defaultValue.userType()) {
    case QMetaType::Bool:
        form["type"] = "boolean";
        break;
    case QMetaType::UInt:
        form["type"] = "integer";
        form["minimum"] = 0;
        form["maximum"] = INT_MAX;
        break;
    default:
        form["type"] = "string";
    }
    if (const QString text = pattern(setting.rule); !text.isEmpty())
        form["pattern"] = text;
    if (setting.rule.kind == Rule::Kind::NotValue)
        form["not"] = QJsonObject{{"const", setting.rule.number}};
    return form;
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

/// At least one of those that are looked at together is on.
QJsonArray someOn()
{
    QJsonArray choices;
    for (const Setting &setting : aux::settingsCatalogue()) {
        if (setting.rule.kind != Rule::Kind::OneOn)
            continue;
        QJsonObject choice = emptyObject();
        choice =
            withMember(choice, setting.keyPath().split('/', Qt::SkipEmptyParts), {{"const", true}});
        choices += choice;
    }
    return choices;
}

Result printSchema(const Call &)
{
    QJsonObject schema = emptyObject();
    for (const Setting &setting : aux::settingsCatalogue()) {
        schema =
            withMember(schema, setting.keyPath().split('/', Qt::SkipEmptyParts), form(setting));
    }
    schema["$schema"] = "https://json-schema.org/draft/2020-12/schema";
    schema["title"] = "Settings of a terminal";
    schema["anyOf"] = someOn();
    return {schema, QString::fromUtf8(jsonText(schema)).trimmed()};
}

const Registration row{{"config schema",
                        "",
                        "schema",
                        "object",
                        "Print a JSON Schema for configuration files",
                        {},
                        printSchema}};

} // namespace

} // namespace auxctl
