// SPDX-License-Identifier: MIT
#ifndef AUX_ERROR_H
#define AUX_ERROR_H

#include <aux/export.h>

#include <QDebug>
#include <QString>

#include <iosfwd>
#include <list>
#include <utility>

/// The support library of an embedded data terminal.
namespace aux
{

/// One entry of an Error: who raised it, what happened, and a number to decide by.
///
/// Entries made by libaux have the domain "libaux" and one of these ids:
///
/// | id    | meaning                                                                            |
/// |-------|------------------------------------------------------------------------------------|
/// | 10001 | a directory or file is missing, or an internal failure; container, key, supplicant |
/// |       | and system-information failures                                                    |
/// | 10002 | the source file is missing; a fault in a configuration file or a USB id list       |
/// | 10003 | a source file cannot be read                                                       |
/// | 10004 | moving or removing a file failed                                                   |
/// | 10005 | checksum mismatch                                                                  |
/// | 10006 | not enough free space                                                              |
class AUX_EXPORT ErrorData
{
public:
    /// Takes both strings over; the arguments are left null.
    /// @shown{errors,extraData}
    ErrorData(QString &&domain, QString &&msg, unsigned int id)
        : m_domain(std::move(domain)), m_msg(std::move(msg)), m_id(id)
    {
    }

    /// @{
    /// What the entry was made from.
    /// @shown{errors,explain}
    const QString &getDomain() const { return m_domain; }
    const QString &getMsg() const { return m_msg; }
    unsigned int getId() const { return m_id; }
    /// @}

private:
    QString m_domain;
    QString m_msg;
    unsigned int m_id;
};

class [[nodiscard]] Error;

/// The outcome of an operation: empty for success, else a chain of entries. Iterating goes from the
/// newest, the one that was appended last, to the oldest. An operation of libaux returns one entry,
/// or one for each fault of a configuration file.
/// @shown{errors,passOn}
///
/// *Guarantees*: a plain value without locks, owned by one thread at a time; nothing here blocks
/// or touches the outside. Whoever ignores a returned Error gets a compiler warning. An error may
/// be assigned, moved or appended to itself: it stays usable and keeps its entries.
class AUX_EXPORT Error
{
public:
    /// Goes from the newest entry to the oldest.
    using const_iterator = std::list<ErrorData>::const_reverse_iterator;

    /// Success.
    Error() = default;
    /// A failure with exactly this entry. Implicit, so that an operation can return its entry.
    /// @shown{errors,passOn}
    Error(ErrorData data);

    /// Copies the entries and the extra data.
    Error(const Error &) = default;
    /// Leaves the other empty, its extra data null.
    Error(Error &&) noexcept = default;
    ~Error() = default;

    /// Copies the other's entries and extra data in place of its own.
    Error &operator=(const Error &) = default;
    /// Takes over the other's entries and leaves it none; the two extra data change places.
    Error &operator=(Error &&other) noexcept;

    /// Appends the other's entries without copying them and leaves it none; the two extra data
    /// change places: append the cause to what it means here, and its extra data stay. An error
    /// moved onto itself stays as it is.
    /// @shown{errors,passOn}
    Error &operator<<(Error &&other) noexcept;
    /// Appends copies of the other's entries and takes its extra data, also a null one and that of
    /// a success.
    /// @shown{errors,collect}
    Error &operator<<(const Error &other);

    /// True exactly when there is an entry; extra data alone is no failure.
    /// @shown{errors,decide}
    bool hasError() const noexcept { return !m_entries.empty(); }

    /// @{
    /// Iterates from the newest entry to the oldest.
    /// @shown{errors,explain}
    const_iterator begin() const noexcept { return m_entries.rbegin(); }
    const_iterator end() const noexcept { return m_entries.rend(); }
    /// @}

    /// @{
    /// Domain, message and id of the newest entry; only where hasError().
    /// @shown{errors,decide}
    const QString &getDomain() const { return begin()->getDomain(); }
    const QString &getMsg() const { return begin()->getMsg(); }
    unsigned int getId() const { return begin()->getId(); }
    /// @}

    /// @{
    /// Free text attached to the whole error; null until it is set. An error of libaux that the
    /// system caused has the cause here: what it is about, a colon, a blank and the explanation, as
    /// in "/data/zel/rk4/new/x.bin: No space left on device".
    /// @shown{errors,extraData} @shown{errors,explain}
    void setExtraData(const QString &extraData) { m_extraData = extraData; }
    const QString &getExtraData() const { return m_extraData; }
    /// @}

private:
    std::list<ErrorData> m_entries; // oldest first
    QString m_extraData;
};

/// Writes domain, message and id the way QDebug writes two strings and a number: `"d" "m" 1`.
/// @shown{errors,printEntry}
AUX_EXPORT QDebug operator<<(QDebug debug, const ErrorData &data);
/// Writes one line per entry, newest first, each indented deeper than the one before. Nothing for
/// success.
/// @shown{errors,print}
AUX_EXPORT QDebug operator<<(QDebug debug, const Error &error);

/// Writes `domain message id` in UTF-8, whatever the stream's number format is.
/// @shown{errors,printEntry}
AUX_EXPORT std::ostream &operator<<(std::ostream &stream, const ErrorData &data);
/// Writes the entries newest first, entry k indented by 2k blanks, no line feed after the last.
/// Nothing for success.
/// @shown{errors,print}
AUX_EXPORT std::ostream &operator<<(std::ostream &stream, const Error &error);

} // namespace aux

#endif
