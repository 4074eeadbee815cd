// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_HELPERPROGRAM_H
#define AUX_PROCESS_HELPERPROGRAM_H

#include "error/reason.h"

#include <QProcess>
#include <QVector>

#include <functional>

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

    /// Gives it a descriptor of this process for its input, which else is empty.
    void setInput(int descriptor) { m_input = duplicate(descriptor); }
    /// Gives it one for its output, which else is kept.
    void setOutput(int descriptor) { m_output = duplicate(descriptor); }
    /// Gives it one more, under the same number.
    void inherit(int descriptor) { m_inherited += descriptor; }

    /// Runs it until it exits, with whatever exit code. The reason where it did not: it is killed
    /// when it has had half a minute, and a second for each 256 KiB, which the slowest terminal
    /// does in less. `bytes` tells how much it has to go through, as far as is known by then.
    Reason run(const QString &program, const QStringList &arguments,
               const std::function<qint64()> &bytes);

protected:
    void setupChildProcess() override;

private:
    int duplicate(int descriptor);
    bool waitForEnd(const std::function<qint64()> &bytes);
    void killAll();

    int m_input = -1;
    int m_output = -1;
    QVector<int> m_inherited;
    QVector<int> m_own; // closed in the end
};

} // namespace aux

#endif
