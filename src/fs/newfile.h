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
    /// The file to be; one of that name, or a link, is replaced.
    explicit NewFile(QString path) : m_path(std::move(path)) {}

    /// Makes the file; false also where it could not get the name in the end.
    bool open();
    const QString &path() const { return m_path; }
    qint64 size() const { return m_file.size(); }
    int handle() const { return m_file.handle(); }
    bool write(const QByteArray &content) { return m_file.write(content) == content.size(); }
    /// Returns whether it can still grow by so much; where not, what wrote to it had no room.
    bool hasRoom(int bytes = 4096);
    /// Gives it its name and fsyncs both the file and its directory; true when all of that
    /// succeeded.
    bool commit();

    /// Why the last of open(), hasRoom() and commit() failed: "PATH: EXPLANATION".
    const QString &cause() const { return m_cause; }

private:
    bool mayTakeName();
    bool failed(const QString &explanation);
    bool failed(int error);

    QString m_path;
    QTemporaryFile m_file;
    QString m_cause;
};

} // namespace aux

#endif
