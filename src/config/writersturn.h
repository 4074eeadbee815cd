// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_WRITERSTURN_H
#define AUX_CONFIG_WRITERSTURN_H

#include <QString>

namespace aux
{

/// The turn of one writer of a settings file, held while the object lives. Writers of all threads
/// and processes get it one after the other, in the order in which they came.
///
/// The queue is a hidden file beside the settings file. Its mode is 0600, so that no other account
/// can hold writers up; the kernel gives up the place of a writer that dies.
class WritersTurn
{
public:
    /// Blocks until all who came before are done. What has the queue's name and is no regular file
    /// is removed.
    explicit WritersTurn(const QString &settingsFile);
    ~WritersTurn();
    WritersTurn(const WritersTurn &) = delete;
    WritersTurn &operator=(const WritersTurn &) = delete;

    /// Returns 0, or the errno for which there is no queue, and hence no turn to wait for.
    int error() const { return m_error; }

private:
    int m_queue = -1;
    int m_error = 0;
};

} // namespace aux

#endif
