// SPDX-License-Identifier: MIT
#ifndef AUX_ERROR_FAILURE_H
#define AUX_ERROR_FAILURE_H

#include "aux/error.h"

namespace aux
{

/// The ids of the entries that this library makes; error.h tells callers what they mean.
enum class ErrorId : unsigned int {
    General = 10001,
    InvalidContent = 10002,
    SourceMissing = InvalidContent,
    NotReadable = 10003,
    MoveFailed = 10004,
    ChecksumMismatch = 10005,
    NoSpace = 10006,
};

/// The one way to make a failure.
inline Error failure(ErrorId id, QString message)
{
    return ErrorData(QStringLiteral("libaux"), std::move(message), static_cast<unsigned int>(id));
}

} // namespace aux

#endif
