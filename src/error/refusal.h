// SPDX-License-Identifier: MIT
#ifndef AUX_ERROR_REFUSAL_H
#define AUX_ERROR_REFUSAL_H

#include "error/failure.h"

namespace aux
{

/// Why an operation gave up; null where it did not.
using Reason = QString;

/// The failure of an operation, named with its reason.
inline Error refuse(const char *operation, const Reason &reason)
{
    return failure(ErrorId::General,
                   QStringLiteral("%1: %2").arg(QLatin1String(operation), reason));
}

/// The same; success without a reason.
inline Error outcome(const char *operation, const Reason &reason)
{
    return reason.isNull() ? Error() : refuse(operation, reason);
}

namespace reason
{

inline const Reason cannotRead = QStringLiteral("Failed to open file for reading");
inline const Reason cannotCreate = QStringLiteral("Failed to open file for writing");
inline const Reason cannotWrite = QStringLiteral("Failed to write to output file");

} // namespace reason

} // namespace aux

#endif
