// SPDX-License-Identifier: MIT
#include "aux/countrycodes.h"

#include <array>

namespace aux
{

namespace
{

constexpr const char *unknownState = "UNK";

// In the order of the numeric codes, which is not alphabetical everywhere.
constexpr std::array<const char *, 53> states{
    "   ", "A",  "AL",  "AND", "ARM", "AZ",  "B",  "BG",  "BIH",       "BY",  "CH",
    "CY",  "CZ", "D",   "DK",  "E",   "EST", "F",  "FIN", "FL",        "FR",  "UK",
    "GE",  "GR", "H",   "HR",  "I",   "IRL", "IS", "KZ",  "L",         "LT",  "LV",
    "M",   "MC", "MD",  "MK",  "N",   "NL",  "P",  "PL",  "RO",        "RSM", "RUS",
    "S",   "SK", "SLO", "TM",  "TR",  "UA",  "V",  "YU",  unknownState};

constexpr int firstUnion = 253;
constexpr std::array<const char *, 3> unions{"EC", "EUR", "WLD"};

const char *lookUp(int stateId)
{
    if (stateId < 0)
        return unknownState;
    const auto id = static_cast<std::size_t>(stateId);
    if (id < states.size())
        return states[id];
    if (id < firstUnion || id - firstUnion >= unions.size())
        return unknownState;
    return unions[id - firstUnion];
}

} // namespace

QString CountryCodes::countryCodeFromStateID(int stateId)
{
    return QString::fromUtf8(lookUp(stateId));
}

} // namespace aux
