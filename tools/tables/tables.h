// SPDX-License-Identifier: MIT
#ifndef TABLES_H
#define TABLES_H

#include <QTextStream>

/// docs/settings.md: the catalogue of settings.
void printSettings(QTextStream &out);
/// docs/tables.md: the locations and the types of containers.
void printTables(QTextStream &out);
/// The magic file that lets file(1) name a container.
void printMagic(QTextStream &out);

#endif
