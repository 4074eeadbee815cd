// SPDX-License-Identifier: MIT
#include <aux/error.h>

#include "support/observe.h"
#include "support/rows.h"

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

/// "NEWEST ... OLDEST/EXTRA DATA"
QString describe(const Error &error)
{
    QStringList messages;
    for (const ErrorData &entry : error)
        messages += entry.getMsg();
    return messages.join(' ') + '/' + error.getExtraData();
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
        QString domain = "d";
        QString message = "m";
        const Error error = ErrorData(std::move(domain), std::move(message), 4294967295U);
        QVERIFY(domain.isNull() && message.isNull());
        QVERIFY(error.hasError());
        QCOMPARE(error.getDomain(), "d");
        QCOMPARE(error.getMsg(), "m");
        QCOMPARE(error.getId(), 4294967295U);
        QVERIFY(error.getExtraData().isNull());
    }

    void copiesAndMoves()
    {
        Error source = chain({"A", "B"}, "s");
        Error assigned = chain({"old"}, "t");
        assigned = source;
        for (const Error &error : {source, Error(source), assigned})
            QCOMPARE(describe(error), "B A/s");
        const Error moved(std::move(source));
        QCOMPARE(describe(moved) + describe(source), "B A/s/");
        Error target = chain({"old"}, "t");
        target = std::move(assigned);
        QCOMPARE(describe(target) + describe(assigned), "B A/s/t");
        QVERIFY(!assigned.hasError()); // extra data alone is no failure
    }

    void appending()
    {
        Error a = chain({"A"}, "a");
        Error b = chain({"B", "C"}, "b");
        QCOMPARE(&(a << std::move(b)), &a);
        QCOMPARE(describe(a) + describe(b), "C B A/b/a");
        QCOMPARE(a.getMsg(), "C");
        const Error d = chain({"D"});
        QCOMPARE(&(a << d), &a);
        QCOMPARE(describe(a) + describe(d), "D C B A/D/");
        QVERIFY(a.getExtraData().isNull());
    }

    void selfReferenceKeepsTheEntries()
    {
        Error error = chain({"A", "B"}, "x");
        Error &same = error;
        error = same;
        error = std::move(same);
        error << std::move(same);
        QCOMPARE(describe(error), "B A/x");
        error << same;
        QCOMPARE(describe(error), "B A B A/x");
    }

    void printsOneLinePerEntry_data()
    {
        row("success", Error(), std::string(), QString());
        row("not ASCII", chain({"Größe"}), std::string("libaux Größe 10001"),
            "\"libaux\" \"Größe\" 10001 \n ");
        row("three entries", chain({"A", "B", "C"}),
            std::string("libaux C 10003\n  libaux B 10002\n    libaux A 10001"),
            "\"libaux\" \"C\" 10003 \n    \"libaux\" \"B\" 10002 \n"
            "       \"libaux\" \"A\" 10001 \n ");
    }
    void printsOneLinePerEntry()
    {
        const auto [error, stream, line] = cells<Error, std::string, QString>();
        std::ostringstream out;
        out << std::hex << std::showbase << error;
        QCOMPARE(out.str(), stream);

        QString debug;
        QDebug(&debug) << error;
        QCOMPARE(debug, line);
    }
};

QTEST_APPLESS_MAIN(TestError)
#include "tst_error.moc"
