// SPDX-License-Identifier: MIT
#include <aux/countrycodes.h>
#include <aux/fshelper.h>

int main()
{
    const auto [error, checksum] = aux::FsHelper::generateChecksum(QStringLiteral("/"));
    const bool failed = error.hasError() && error.getId() == 10001 && checksum.isEmpty();
    return failed && !aux::CountryCodes::countryCodeFromStateID(13).isEmpty() ? 0 : 1;
}
