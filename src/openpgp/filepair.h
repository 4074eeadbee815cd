// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_FILEPAIR_H
#define AUX_OPENPGP_FILEPAIR_H

#include "fs/newfile.h"
#include "process/helperprogram.h"

#include <QFile>

namespace aux
{

/// A file for a program to read. Only regular files are taken: opening a pipe could wait for ever.
bool openForProgram(QFile &file);

/// A file that a program reads, and the new one that it writes. Programs never see their names.
class FilePair
{
public:
    FilePair(const QString &input, const QString &output) : m_input(input), m_output(output) {}

    /// Opens both; the reason where that fails.
    Reason open();
    void connectTo(HelperProgram &program) const;
    /// What the program has to go through; of the output only what is there is known.
    qint64 bytes() const { return m_input.size() + m_output.size(); }
    /// Returns whether the program, which has failed, could still have written.
    bool hasRoom() { return m_output.hasRoom(); }
    /// Gives the output its name; the reason where that fails.
    Reason commit();

private:
    QFile m_input;
    NewFile m_output;
};

} // namespace aux

#endif
