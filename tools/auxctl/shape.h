// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SHAPE_H
#define AUXCTL_SHAPE_H

#include <QJsonObject>

namespace auxctl
{

/// The JSON Schema of a shape as the rows of the commands have it, and the help shows it: "text",
/// "number", "bool", "scalar" (one of these), "errors" (those of one failure), "object", "[SHAPE]",
/// or "{name: SHAPE, name?: SHAPE}", in which a "?" marks what may be missing.
QJsonObject schemaOf(const char *shape);

/// The JSON Schema of every document that --json prints, with one definition for each command.
QJsonObject schemaOfDocuments();

} // namespace auxctl

#endif
