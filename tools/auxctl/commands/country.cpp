// SPDX-License-Identifier: MIT
#include "command.h"

#include <aux/countrycodes.h>

namespace auxctl
{

namespace
{

Result country(const Call &call)
{
    bool isNumber = false;
    const int id = call.argument(0).toInt(&isNumber);
    if (!isNumber)
        misuse(QStringLiteral("\"%1\" is no number").arg(call.argument(0)));
    return plainText(aux::CountryCodes::countryCodeFromStateID(id));
}

const Registration row{{"country",
                        "ID",
                        "country",
                        "text",
                        "Print the country code of a numeric state id",
                        {},
                        country}};

} // namespace

} // namespace auxctl
