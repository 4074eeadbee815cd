// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_ROWS_H
#define AUX_TESTS_ROWS_H

#include "support/files.h"

#include <QVariant>
#include <QtTest>

#include <array>
#include <tuple>
#include <utility>

inline constexpr std::array cellNames{"1st", "2nd", "3rd", "4th", "5th", "6th"};

/// Whether the test that is called for its data has no row yet.
inline bool isFirstRow()
{
    static QByteArray test;
    return std::exchange(test, QTest::currentTestFunction()) != test;
}

/// Adds a row to the data of a test; a literal counts as a QString.
template <typename... Cells>
void row(const char *name, const Cells &...cells)
{
    const char *const *cellName = cellNames.data();
    const auto describe = [&cellName](const auto &cell) {
        using Cell = std::decay_t<decltype(cell)>;
        using Type = std::conditional_t<std::is_same_v<Cell, const char *>, QString, Cell>;
        QTest::addColumn<Type>(*cellName++);
    };
    if (isFirstRow())
        (describe(cells), ...);
    (QTest::newRow(name) << ... << cells);
}

/// Adds the rows of a file of tests/data, "INPUT => OUTPUT" each.
inline void addRows(const char *file)
{
    const QByteArray rows = read(AUX_TEST_DATA + QString(file));
    if (rows.isEmpty())
        qFatal("no rows in %s", file);
    for (const QString &line : QString::fromUtf8(rows).split('\n', Qt::SkipEmptyParts))
        row(qPrintable(line), line.section("=>", 0, 0).trimmed(),
            line.section("=>", 1, 1).trimmed());
}

/// The cells of the row that a test is called for, as in
/// const auto [level, text] = cells<int, QString>();
template <typename... Types>
std::tuple<Types...> cells()
{
    const char *const *cellName = cellNames.data();
    const auto cell = [&cellName](int type) { return QTest::qData(*cellName++, type); };
    return std::tuple<Types...>{*static_cast<Types *>(cell(qMetaTypeId<Types>()))...};
}

template <typename Type>
Type cell()
{
    return std::get<0>(cells<Type>());
}

template <typename... Types>
QVariant convert(const QVariant &value, const QString &type)
{
    QVariant result;
    ((type == QMetaType::fromType<Types>().name() ? result = value.value<Types>() : result), ...);
    return result;
}

/// Reads a value from "TYPE TEXT", as in "uint 8000", "QString" or "none".
inline QVariant valueOf(const QString &description)
{
    return convert<bool, int, uint, double, QByteArray, QString, QStringList>(
        description.section(' ', 1), description.section(' ', 0, 0));
}

#endif
