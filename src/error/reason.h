// SPDX-License-Identifier: MIT
#ifndef AUX_ERROR_REASON_H
#define AUX_ERROR_REASON_H

#include "error/failure.h"

namespace aux
{

/// Why an operation gave up, and what of the system caused that; none where it did not give up.
class [[nodiscard]] Reason
{
public:
    Reason() = default;
    /// Implicit, so that a function can return its text.
    Reason(QString text) : m_text(std::move(text)) {}

    bool isNone() const { return m_text.isNull(); }
    const QString &text() const { return m_text; }
    /// "PATH: EXPLANATION"; null where the system has not caused it.
    const QString &cause() const { return m_cause; }

    /// The same with a cause: an errno, or what the path is or is not.
    Reason because(const QString &path, int error) const { return because(causeOf(path, error)); }
    Reason because(const QString &path, const QString &explanation) const
    {
        return because(causeOf(path, explanation));
    }
    /// The same with a cause that has its path already.
    Reason because(QString cause) const
    {
        Reason reason = *this;
        reason.m_cause = std::move(cause);
        return reason;
    }

    /// Returns whether both are the same reason, whatever caused it.
    friend bool operator==(const Reason &one, const Reason &other)
    {
        return one.m_text == other.m_text;
    }

private:
    QString m_text;
    QString m_cause;
};

/// The failure of an operation, named with its reason.
inline Error refuse(const char *operation, const Reason &reason)
{
    return failure(ErrorId::General,
                   QStringLiteral("%1: %2").arg(QLatin1String(operation), reason.text()),
                   reason.cause());
}

/// The same; success without a reason.
inline Error outcome(const char *operation, const Reason &reason)
{
    return reason.isNone() ? Error() : refuse(operation, reason);
}

namespace reason
{

inline const Reason cannotRead = QStringLiteral("Failed to open file for reading");
inline const Reason cannotCreate = QStringLiteral("Failed to open file for writing");
inline const Reason cannotWrite = QStringLiteral("Failed to write to output file");

} // namespace reason

} // namespace aux

#endif
