// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_DATAROWS_H
#define AUX_TESTS_DATAROWS_H

#include "support/files.h"

#include <QVariant>
#include <QtTest>

/// Adds the rows of a file of tests/data, "INPUT => OUTPUT" each, as the columns of these names.
inline void addRows(const char *file)
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    const QByteArray rows = read(QFINDTESTDATA("../data/" + QString(file)));
    if (rows.isEmpty())
        qFatal("no rows in %s", file);
    for (const QString &line : QString::fromUtf8(rows).split('\n', Qt::SkipEmptyParts)) {
        const QStringList sides = line.split("=>");
        QTest::newRow(qPrintable(line)) << sides.value(0).trimmed() << sides.value(1).trimmed();
    }
}

/// Reads a value from "TYPE TEXT", as in "uint 8000", "QString" or "none".
inline QVariant valueOf(const QString &description)
{
    const QString type = description.section(' ', 0, 0);
    QVariant value = description.section(' ', 1);
    return value.convert(QMetaType::type(qPrintable(type))) ? value : QVariant();
}

#endif
