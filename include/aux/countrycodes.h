// SPDX-License-Identifier: MIT
#ifndef AUX_COUNTRYCODES_H
#define AUX_COUNTRYCODES_H

#include <aux/export.h>

#include <QString>

namespace aux
{

/// Names the state that issued a tachograph card or registered a vehicle.
///
/// *Guarantees*: reads a constant table; any thread, never blocks, never fails.
class AUX_EXPORT CountryCodes
{
public:
    CountryCodes() = default;

    /// Returns the alphabetic code for a numeric nation code, the one-byte NationNumeric of the
    /// digital tachograph (Commission Regulation (EEC) No 3821/85, Annex 1B, appendix 1).
    ///
    /// Ids 0 to 52 and 253 to 255 are assigned; 0, "no information", is three blanks. Every other
    /// id, also one outside a byte, gives "UNK". Never null, never empty.
    /// @shown{codes,country}
    static QString countryCodeFromStateID(int stateId);
};

} // namespace aux

#endif
