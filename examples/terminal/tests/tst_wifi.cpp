// SPDX-License-Identifier: MIT
#include "wifi.h"

#include <QtTest>

class TestWifi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Those of depot.conf, where the daemon does not run at first.
    void listsWhatIsInReach()
    {
        const auto [error, networks] = networksInReach();
        QVERIFY(!error.hasError());
        QStringList names;
        for (const auto &network : networks)
            names += network.essid;
        QCOMPARE(names, QStringList({"Depot", "Guests", "Yard 2"}));
    }

    void askAgain() { QVERIFY(!networksInReach().first.hasError()); }
};

QTEST_GUILESS_MAIN(TestWifi)
#include "tst_wifi.moc"
