// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_ROWS_H
#define AUX_TESTS_ROWS_H

#include <QtTest>

/// Declares a test's data: columns<int, QString>("level", "message").
template <typename... Types, typename... Names>
void columns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// Adds one row of it.
template <typename... Cells>
void row(const char *name, const Cells &...cells)
{
    (QTest::newRow(name) << ... << cells);
}

#endif
