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
        for (const char *daemon : {"started", "running"}) {
            const auto [error, networks] = networksInReach();
            QVERIFY2(!error.hasError(), daemon);
            QStringList names;
            for (const auto &network : networks)
                names += network.essid;
            QCOMPARE(names, QStringList({"Depot", "Guests", "Yard 2"}));
        }
    }
};

QTEST_GUILESS_MAIN(TestWifi)
#include "tst_wifi.moc"
