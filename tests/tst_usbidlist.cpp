// SPDX-License-Identifier: MIT
#include <aux/datahelper.h>

#include "support/datarows.h"
#include "support/observe.h"

class TestUsbIdList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsing_data() { addRows("usbids.txt"); }
    void parsing()
    {
        QFETCH(QString, input);
        QFETCH(QString, output);
        QStringList list{"before"};
        const QString error = text(aux::DataHelper::vIdpIdListFromString(input, list));
        const bool fails = output == "error";
        QCOMPARE(list.join(' '), fails ? "before" : output);
        QCOMPARE(error, fails ? "libaux USB VID:PID list syntax error 10002" : QString());
    }
};

QTEST_APPLESS_MAIN(TestUsbIdList)
#include "tst_usbidlist.moc"
