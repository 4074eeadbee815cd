// SPDX-License-Identifier: MIT
#include "command.h"
#include "output.h"
#include "shape.h"

namespace auxctl
{

namespace
{

Result printSchema(const Call &)
{
    const QJsonObject schema = schemaOfDocuments();
    return {schema, QString::fromUtf8(jsonText(schema)).trimmed()};
}

const Registration row{{"schema",
                        "",
                        "schema",
                        "object",
                        "Print the JSON Schema of what --json prints",
                        {},
                        printSchema}};

} // namespace

} // namespace auxctl
