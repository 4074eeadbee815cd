// SPDX-License-Identifier: MIT
#include "examples.h"

#include <aux/countrycodes.h>
#include <aux/crc32.h>

#include <QByteArray>

namespace examples
{

//! [country]
// The state that issued a card, for the list of downloads. The byte comes from the card.
QString issuedBy(const QByteArray &card)
{
    if (card.isEmpty())
        return {};
    return aux::CountryCodes::countryCodeFromStateID(static_cast<unsigned char>(card.at(0)));
}
//! [country]

//! [crc]
// The sum over header and body as if they were one piece.
unsigned int sumOf(QByteArray header, QByteArray body)
{
    const auto bytesOf = [](QByteArray &data) {
        return reinterpret_cast<unsigned char *>(data.data());
    };
    unsigned int crc = 0;
    crc = aux::crc32(crc, bytesOf(header), static_cast<unsigned int>(header.size()));
    return aux::crc32(crc, bytesOf(body), static_cast<unsigned int>(body.size()));
}
//! [crc]

} // namespace examples
