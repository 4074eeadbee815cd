// SPDX-License-Identifier: MIT
#ifndef AUX_DATA_HELPERPROGRAM_H
#define AUX_DATA_HELPERPROGRAM_H

#include "data/refusal.h"

#include <QProcess>
#include <QVector>

namespace aux
{

/// A program that does not outlive this object or its process, nor does anything that it has
/// started and that has not left its process group.
class HelperProgram : public QProcess
{
public:
    HelperProgram();
    ~HelperProgram() override;
    HelperProgram(const HelperProgram &) = delete;
    HelperProgram &operator=(const HelperProgram &) = delete;
    HelperProgram(HelperProgram &&) = delete;
    HelperProgram &operator=(HelperProgram &&) = delete;

    /// Descriptors of this process for its input, which else is empty, and for its output, which
    /// else is kept.
    void connectFiles(int input, int output);
    /// A descriptor of this process that it shall have under the same number.
    void lend(int descriptor) { m_lent += descriptor; }

    /// Runs it until it exits, with whatever exit code. The reason where it did not; after its
    /// time, in milliseconds, it is killed.
    Reason run(const QString &program, const QStringList &arguments, int patience);

protected:
    void setupChildProcess() override;

private:
    void killAll();

    int m_input = -1;
    int m_output = -1;
    QVector<int> m_lent;
};

/// How long a program may take, in milliseconds, that goes once through so many bytes: half a
/// minute, and a second more for each 256 KiB, which the slowest terminal does in less.
int patienceFor(qint64 bytes);

} // namespace aux

#endif
