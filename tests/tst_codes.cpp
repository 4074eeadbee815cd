// SPDX-License-Identifier: MIT
#include <aux/countrycodes.h>
#include <aux/crc32.h>

#include <QtTest>

#include <vector>

namespace
{

/// One bit after the other, straight from the definition.
unsigned int crcByDefinition(const std::vector<unsigned char> &data)
{
    unsigned int crc = 0xFFFFFFFF;
    for (const unsigned char byte : data) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1U) ^ (0xEDB88320U & (0U - (crc & 1U)));
    }
    return ~crc;
}

} // namespace

class TestCodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void crcHasTheCheckValue()
    {
        unsigned char digits[] = "123456789";
        QCOMPARE(aux::crc32(0, digits, 9), 0xCBF43926U);
        QCOMPARE(aux::crc32(0x1234, nullptr, 0), 0x1234U);
    }

    /// Around every length at which the work is divided differently, whole and in two parts.
    void crcEqualsItsDefinitionAndContinues_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {1, 7, 8, 9, 1023, 1024, 1025, 65537, 600001})
            QTest::addRow("%d bytes", length) << length;
    }
    void crcEqualsItsDefinitionAndContinues()
    {
        QFETCH(int, length);
        std::vector<unsigned char> data;
        for (int i = 0; i < length; ++i)
            data.push_back(static_cast<unsigned char>(i * i * 31 + (i >> 8)));
        const auto size = static_cast<unsigned int>(length);
        const unsigned int expected = crcByDefinition(data);
        QCOMPARE(aux::crc32(0, data.data(), size), expected);
        for (const unsigned int cut : {1U, size / 3, size - 1}) {
            const unsigned int first = aux::crc32(0, data.data(), cut);
            QCOMPARE(aux::crc32(first, data.data() + cut, size - cut), expected);
        }
    }

    void countryCode_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("code");
        const QStringList states =
            QStringLiteral("   ,A,AL,AND,ARM,AZ,B,BG,BIH,BY,CH,CY,CZ,D,DK,E,EST,F,FIN,FL,FR,UK,GE,"
                           "GR,H,HR,I,IRL,IS,KZ,L,LT,LV,M,MC,MD,MK,N,NL,P,PL,RO,RSM,RUS,S,SK,SLO,"
                           "TM,TR,UA,V,YU,UNK")
                .split(QLatin1Char(','));
        QCOMPARE(states.size(), 53);
        for (int id = 0; id < states.size(); ++id)
            QTest::addRow("%d", id) << id << states[id];
        for (const int id : {53, 100, 252, 256, -1, INT_MAX, INT_MIN})
            QTest::addRow("%d", id) << id << QStringLiteral("UNK");
        QTest::newRow("253") << 253 << QStringLiteral("EC");
        QTest::newRow("254") << 254 << QStringLiteral("EUR");
        QTest::newRow("255") << 255 << QStringLiteral("WLD");
    }
    void countryCode()
    {
        QFETCH(int, id);
        QTEST(aux::CountryCodes::countryCodeFromStateID(id), "code");
    }
};

QTEST_APPLESS_MAIN(TestCodes)
#include "tst_codes.moc"
