// SPDX-License-Identifier: MIT
#include <aux/error.h>

#include "support/observe.h"

#include <QtTest>

#include <ios>

using aux::Error;
using aux::ErrorData;

namespace
{

Error chain(const QStringList &messages, const QString &extraData = {})
{
    Error error;
    unsigned int id = 10001;
    for (QString message : messages)
        error << Error(ErrorData(QStringLiteral("libaux"), std::move(message), id++));
    error.setExtraData(extraData);
    return error;
}

QStringList messages(const Error &error)
{
    QStringList list;
    for (const ErrorData &entry : error)
        list += entry.getMsg();
    return list;
}

} // namespace

Q_DECLARE_METATYPE(Error)
Q_DECLARE_METATYPE(std::string)

class TestError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWhatItIsGiven()
    {
        QString domain = QStringLiteral("d");
        QString message = QStringLiteral("m");
        const Error error = ErrorData(std::move(domain), std::move(message), 4294967295U);
        QVERIFY(domain.isNull() && message.isNull());
        QVERIFY(error.hasError());
        QCOMPARE(error.getDomain(), QStringLiteral("d"));
        QCOMPARE(error.getMsg(), QStringLiteral("m"));
        QCOMPARE(error.getId(), 4294967295U);
        QVERIFY(error.getExtraData().isNull());
    }

    void extraDataAloneIsNoFailure()
    {
        Error error;
        QVERIFY(error.getExtraData().isNull());
        error.setExtraData(QStringLiteral("x"));
        QVERIFY(!error.hasError());
    }

    void copyingLeavesTheOtherAlone()
    {
        const Error source = chain({"A", "B"}, QStringLiteral("s"));
        const Error copy(source);
        Error assigned = chain({"old"}, QStringLiteral("t"));
        assigned = source;
        for (const Error &error : {source, copy, assigned}) {
            QCOMPARE(messages(error), QStringList({"B", "A"}));
            QCOMPARE(error.getExtraData(), QStringLiteral("s"));
        }
    }

    void movingEmptiesTheOther()
    {
        Error source = chain({"A", "B"}, QStringLiteral("s"));
        Error moved(std::move(source));
        QCOMPARE(messages(moved), QStringList({"B", "A"}));
        QCOMPARE(moved.getExtraData(), QStringLiteral("s"));
        QVERIFY(!source.hasError() && source.getExtraData().isNull());

        Error target = chain({"old"}, QStringLiteral("t"));
        target = std::move(moved);
        QCOMPARE(messages(target), QStringList({"B", "A"}));
        QCOMPARE(target.getExtraData(), QStringLiteral("s"));
        QVERIFY(!moved.hasError());
        QCOMPARE(moved.getExtraData(), QStringLiteral("t"));
    }

    void appendingByMoveExchangesTheExtraData()
    {
        Error a = chain({"A"}, QStringLiteral("a"));
        Error b = chain({"B", "C"}, QStringLiteral("b"));
        QCOMPARE(&(a << std::move(b)), &a);
        QCOMPARE(messages(a), QStringList({"C", "B", "A"}));
        QCOMPARE(a.getMsg(), QStringLiteral("C"));
        QCOMPARE(a.getExtraData(), QStringLiteral("b"));
        QVERIFY(!b.hasError());
        QCOMPARE(b.getExtraData(), QStringLiteral("a"));
    }

    void appendingByCopyReplacesTheExtraData()
    {
        Error a = chain({"A"}, QStringLiteral("a"));
        const Error b = chain({"B", "C"});
        QCOMPARE(&(a << b), &a);
        QCOMPARE(messages(a), QStringList({"C", "B", "A"}));
        QVERIFY(a.getExtraData().isNull());
        QCOMPARE(messages(b), QStringList({"C", "B"}));
    }

    void selfReferenceKeepsTheEntries()
    {
        Error error = chain({"A", "B"}, QStringLiteral("x"));
        Error &same = error;
        error = same;
        error = std::move(same);
        error << std::move(same);
        QCOMPARE(messages(error), QStringList({"B", "A"}));
        error << same;
        QCOMPARE(messages(error), QStringList({"B", "A", "B", "A"}));
        QCOMPARE(error.getExtraData(), QStringLiteral("x"));
    }

    void printsOneLinePerEntry_data()
    {
        QTest::addColumn<Error>("error");
        QTest::addColumn<std::string>("stream");
        QTest::addColumn<QString>("debug");
        QTest::newRow("success") << Error() << std::string() << QString();
        QTest::newRow("one entry, not ASCII") << chain({QStringLiteral("Größe")})
                                              << std::string("libaux Gr\xC3\xB6\xC3\x9F"
                                                             "e 10001")
                                              << QStringLiteral("\"libaux\" \"Größe\" 10001 \n ");
        QTest::newRow("three entries")
            << chain({"A", "B", "C"})
            << std::string("libaux C 10003\n  libaux B 10002\n    libaux A 10001")
            << QStringLiteral("\"libaux\" \"C\" 10003 \n    \"libaux\" \"B\" 10002 \n"
                              "       \"libaux\" \"A\" 10001 \n ");
    }
    void printsOneLinePerEntry()
    {
        QFETCH(Error, error);
        QFETCH(std::string, stream);
        std::ostringstream out;
        out << std::hex << std::showbase << error;
        QCOMPARE(out.str(), stream);

        QString debug;
        QDebug(&debug) << error;
        QTEST(debug, "debug");
    }
};

QTEST_APPLESS_MAIN(TestError)
#include "tst_error.moc"
