// SPDX-License-Identifier: MIT
#include <aux/countrycodes.h>
#include <aux/crc32.h>
#include <aux/datahelper.h>

#include "support/observe.h"
#include "support/rows.h"

#include <vector>

#include <sys/mman.h>

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
        for (const int length : {1, 7, 8, 9, 511, 512, 1281, 65537, 600001})
            row(qPrintable(QString::number(length)), length);
    }
    void crcEqualsItsDefinitionAndContinues()
    {
        const auto length = cell<int>();
        const auto size = static_cast<unsigned int>(length);
        std::vector<unsigned char> data;
        for (unsigned int i = 0; i < size; ++i)
            data.push_back(static_cast<unsigned char>(i * i * 31 + (i >> 8)));
        const unsigned int expected = crcByDefinition(data);
        QCOMPARE(aux::crc32(0, data.data(), size), expected);
        for (const unsigned int cut : {1U, size / 3, size - 1}) {
            const unsigned int first = aux::crc32(0, data.data(), cut);
            QCOMPARE(aux::crc32(first, data.data() + cut, size - cut), expected);
        }
    }

    void crcTakesAnyLength()
    {
        constexpr std::size_t size = (std::size_t{1} << 31U) + 9; // of zeros
        void *data = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (data == MAP_FAILED)
            QSKIP("no room for 2 GiB of addresses");
        QCOMPARE(aux::crc32(0, static_cast<unsigned char *>(data), size), 0xE3D7812EU);
        ::munmap(data, size);
    }

    /// Both ends of the ranges, and where the order is not alphabetical.
    void countryCode()
    {
        const std::pair<int, const char *> codes[] = {
            {0, "   "},       {1, "A"},        {13, "D"},    {21, "UK"},   {22, "GE"},
            {51, "YU"},       {52, "UNK"},     {53, "UNK"},  {252, "UNK"}, {253, "EC"},
            {254, "EUR"},     {255, "WLD"},    {256, "UNK"}, {269, "UNK"}, {-1, "UNK"},
            {INT_MAX, "UNK"}, {INT_MIN, "UNK"}};
        for (const auto &[id, code] : codes)
            QCOMPARE(aux::CountryCodes::countryCodeFromStateID(id), QString(code));
    }

    void usbIds_data() { addRows("usbids.txt"); }
    void usbIds()
    {
        const auto [input, output] = cells<QString, QString>();
        QStringList list{"before"};
        const QString error = text(aux::DataHelper::vIdpIdListFromString(input, list));
        const bool fails = output == "error";
        QCOMPARE(list.join(' '), fails ? "before" : output);
        QCOMPARE(error, fails ? "libaux USB VID:PID list syntax error 10002" : QString());
    }
};

QTEST_APPLESS_MAIN(TestCodes)
#include "tst_codes.moc"
