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

/// The one way to make a failure. The cause becomes its extra data; null where the system has not
/// caused it.
inline Error failure(ErrorId id, QString message, const QString &cause = {})
{
    Error error =
        ErrorData(QStringLiteral("libaux"), std::move(message), static_cast<unsigned int>(id));
    error.setExtraData(cause);
    return error;
}

/// What caused a failure: an errno, or what the path is or is not.
inline QString causeOf(const QString &path, const QString &explanation)
{
    return path + QStringLiteral(": ") + explanation;
}
inline QString causeOf(const QString &path, int error)
{
    return causeOf(path, qt_error_string(error));
}

} // namespace aux

#endif
