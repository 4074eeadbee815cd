// SPDX-License-Identifier: MIT
#ifndef AUX_FS_NEWFILE_H
#define AUX_FS_NEWFILE_H

#include <QTemporaryFile>

#include <utility>

namespace aux
{

/// A file that gets its name only when it is complete, and is gone with this object before that.
///
/// Until then it has no name at all, so that nothing of it is left after a kill or a power cut;
/// only at the very end, and on file systems that cannot do that, it has a temporary one beside the
/// name to come. Its mode is 0600.
class NewFile
{
public:
    /// What becomes of a file or link that has the name already.
    enum class Existing { Replaced, Kept };

    /// The file to be.
    explicit NewFile(QString path, Existing existing = Existing::Replaced)
        : m_path(std::move(path)), m_existing(existing)
    {
    }
    /// One that never gets a name, in the directory for temporary files, which is its path().
    NewFile();
    /// One that never gets a name, beside another.
    static NewFile beside(const NewFile &other) { return {other.m_path, false}; }

    /// Makes the file, unless it is open already; false also where it could not get the name in the
    /// end.
    bool open();
    const QString &path() const { return m_path; }
    /// Where it can be opened as long as this is open.
    QString pathWithoutName() const;
    qint64 size() const { return m_file.size(); }
    int handle() const { return m_file.handle(); }
    bool write(const QByteArray &content);
    /// Returns whether it can still grow by so much; where not, what wrote to it had no room.
    bool hasRoom(int bytes = 4096);
    /// Gives it its name and fsyncs both the file and its directory; true when all of that
    /// succeeded. Of one that never gets a name it only writes what write() has kept.
    bool commit();

    /// Removes what another process, which had it from this one and was killed, has left of it.
    void removeTemporaryName() const;

    /// Why the last of these failed: "PATH: EXPLANATION".
    const QString &cause() const { return m_cause; }

private:
    NewFile(QString path, bool isNamed) : m_path(std::move(path)), m_isNamed(isNamed) {}

    bool mayTakeName();
    bool rename();
    bool failed(const QString &explanation);
    bool failed(int error);

    QString m_path;
    Existing m_existing = Existing::Replaced;
    bool m_isNamed = true;
    QTemporaryFile m_file;
    QString m_cause;
};

} // namespace aux

#endif
