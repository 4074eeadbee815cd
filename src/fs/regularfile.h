// SPDX-License-Identifier: MIT
#ifndef AUX_FS_REGULARFILE_H
#define AUX_FS_REGULARFILE_H

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace aux
{

/// What is said of everything that no RegularFile can open.
inline const QString notRegular = QStringLiteral("not a regular file");

/// A file descriptor that is closed with its owner.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor &&other) noexcept : m_number(other.release()) {}
    Descriptor &operator=(Descriptor &&other) noexcept;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    /// Hands the descriptor to a caller who closes it.
    int release();
    /// False where something that was written has been lost.
    bool close();

private:
    int m_number;
};

/// Takes a piece of what is read; false to read no further.
using TakePiece = std::function<bool(const char *data, qint64 length)>;

/// A regular file, or a link to one, that is read or written in pieces without a buffer.
///
/// Nothing else is ever taken or waited for: a directory, FIFO, socket or device is closed as soon
/// as it is known for what it is. A file of size 0 with content, like those in /proc, is regular.
class RegularFile
{
public:
    /// Opens nothing yet.
    explicit RegularFile(QString path) : m_path(std::move(path)) {}

    bool openForReading();
    /// Makes the file where there is none, with the mode that the umask leaves of 0666. Truncates
    /// nothing: it may be a file that must stay.
    bool openForWriting();

    const QString &path() const { return m_path; }
    /// The descriptor while the file is open, else -1.
    int handle() const { return m_descriptor.number(); }
    /// How long it is now; -1 where that cannot be told.
    qint64 size() const;
    /// Whether both are open and one file, under whatever names.
    bool isSameAs(const RegularFile &other) const;
    /// False where something that was written has been lost.
    bool close();

    /// Reads what is left, up to so many bytes; nothing where the medium fails.
    std::optional<QByteArray> readUpTo(int maximum);
    /// Reads what is left, in pieces of 64 KiB; false where the medium fails, or where the file
    /// ends before its size, as those of sysfs do.
    bool readToEnd(const TakePiece &take);
    /// Reads so many bytes in such pieces; false where the medium fails or the file ends before.
    bool readExactly(qint64 length, const TakePiece &take);
    /// Writes all of it; false where that is not possible, with any part of it written.
    bool write(const char *data, qint64 size);
    /// Goes to an offset to read or write from there.
    bool seek(qint64 offset);
    /// Cuts the file off at its beginning.
    bool truncate();

    /// Why the last of these operations failed: "PATH: EXPLANATION".
    const QString &cause() const { return m_cause; }

private:
    bool open(int flags);
    qint64 read(char *data, qint64 size);
    qint64 readPieces(qint64 length, const TakePiece &take);
    bool endsEarly();
    bool failed(const QString &explanation);
    bool failed(int error);

    QString m_path;
    Descriptor m_descriptor;
    QString m_cause;
};

} // namespace aux

#endif
