// SPDX-License-Identifier: MIT
// Reads whatever text it is given as a USB id list. Success means pairs, and that reading them once
// more changes nothing but prefixes; failure leaves the list alone.
#include <aux/datahelper.h>

#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QStringList before{QStringLiteral("before")};
    QStringList list = before;
    const aux::Error error = aux::DataHelper::vIdpIdListFromString(text, list);
    if (error.hasError()) {
        require(list == before);
        return 0;
    }
    require(text.isEmpty() == list.isEmpty());
    require(list.isEmpty() || list.size() == text.count(QLatin1Char(';')) + 1);
    for (const QString &pair : list)
        require(pair.count(QLatin1Char(':')) == 1);
    return 0;
}
