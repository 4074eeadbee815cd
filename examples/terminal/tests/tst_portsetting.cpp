// SPDX-License-Identifier: MIT
#include "portsetting.h"

#include <QtTest>

class TestPortSetting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove("/data/config/example/terminal.JSON"); }

    void isKeptOrAsBefore_data()
    {
        QTest::addColumn<bool>("agrees");
        QTest::addColumn<unsigned int>("port");
        QTest::addColumn<int>("commits");
        QTest::newRow("the user agrees") << true << 8080U << 1;
        QTest::newRow("the user does not agree") << false << 8000U << 0;
    }
    void isKeptOrAsBefore()
    {
        QFETCH(const bool, agrees);
        QFETCH(const unsigned int, port);
        QFETCH(const int, commits);
        QCoreApplication::setOrganizationName("example");
        QCoreApplication::setApplicationName("terminal");
        aux::Configuration configuration;
        configuration.init();
        const auto currentPort = [&configuration] {
            return configuration.getValue(aux::SettingsCode::NetworkDataport).toUInt();
        };
        unsigned int shown = 0;
        const bool isKept = changePort(configuration, 8080, [&] {
            shown = currentPort();
            return agrees;
        });
        QCOMPARE(isKept, agrees);
        QCOMPARE(shown, 8080U);
        QCOMPARE(currentPort(), port);
        QCOMPARE(configuration.getChangeCounter(), commits);
    }
};

QTEST_GUILESS_MAIN(TestPortSetting)
#include "tst_portsetting.moc"
