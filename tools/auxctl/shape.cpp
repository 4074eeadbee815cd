// SPDX-License-Identifier: MIT
#include "shape.h"

#include "command.h"

#include <QJsonArray>

namespace auxctl
{

namespace
{

QJsonObject objectSchema(const QJsonObject &properties, const QJsonArray &required)
{
    return {{"type", "object"},
            {"properties", properties},
            {"required", required},
            {"additionalProperties", false}};
}

/// Reads a shape from its beginning to its end; one that is none would be a mistake in a row.
class ShapeReader
{
public:
    explicit ShapeReader(QString text) : m_rest(std::move(text)) {}

    QJsonObject read()
    {
        if (take('['))
            return readList();
        return take('{') ? readObject() : wordSchema(takeWord());
    }

private:
    QJsonObject readList()
    {
        const QJsonObject items = read();
        take(']');
        return {{"type", "array"}, {"items", items}};
    }

    QJsonObject readObject()
    {
        QJsonObject properties;
        QJsonArray required;
        do {
            const QString name = takeWord();
            if (!take('?'))
                required += name;
            take(':');
            properties[name] = read();
        } while (take(','));
        take('}');
        return objectSchema(properties, required);
    }

    static QJsonObject wordSchema(const QString &word)
    {
        if (word == "errors")
            return schemaOf("[{domain: text, message: text, id: number}]");
        if (word == "scalar")
            return {{"type", QJsonArray{"string", "number", "boolean"}}};
        const QString type = word == "text" ? "string" : word == "bool" ? "boolean" : word;
        return {{"type", type}};
    }

    bool take(char expected)
    {
        m_rest = m_rest.trimmed();
        const bool isThere = m_rest.startsWith(expected);
        m_rest.remove(0, isThere ? 1 : 0);
        return isThere;
    }

    QString takeWord()
    {
        m_rest = m_rest.trimmed();
        int length = 0;
        while (length < m_rest.size() && m_rest[length].isLetterOrNumber())
            ++length;
        QString word = m_rest.left(length);
        m_rest.remove(0, length);
        return word;
    }

    QString m_rest;
};

} // namespace

QJsonObject schemaOf(const char *shape)
{
    return ShapeReader(shape).read();
}

QJsonObject schemaOfDocuments()
{
    QJsonObject definitions{
        {"error",
         objectSchema({{"error", schemaOf("errors")}, {"cause", schemaOf("text")}}, {"error"})},
        {"--help", objectSchema({{"help", schemaOf("text")}}, {"help"})},
        {"--version", objectSchema({{"version", schemaOf("text")}}, {"version"})}};
    for (const Command &command : commands())
        definitions[command.name] =
            objectSchema({{command.key, schemaOf(command.shape)}}, {command.key});
    QJsonArray any;
    for (const QString &name : definitions.keys())
        any += QJsonObject{{"$ref", "#/$defs/" + QString(name).replace(' ', "%20")}};
    return {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
            {"title", "What auxctl --json prints"},
            {"anyOf", any},
            {"$defs", definitions}};
}

} // namespace auxctl
