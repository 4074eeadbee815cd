// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_FILEPAIR_H
#define AUX_OPENPGP_FILEPAIR_H

#include "fs/newfile.h"
#include "fs/regularfile.h"
#include "process/helperprogram.h"

namespace aux
{

/// Opens a file for a program to read; the reason where that fails.
Reason openForProgram(RegularFile &file);

/// A file that a program reads, and the new one that it writes. Programs never see their names.
class FilePair
{
public:
    FilePair(const QString &input, NewFile &output) : m_input(input), m_output(output) {}

    /// Opens both; the reason where that fails.
    Reason open();
    void connectTo(HelperProgram &program) const;
    /// Keeps the program from taking the last 64 MiB of the output's file system: it is killed by
    /// SIGXFSZ instead. The reason where less is left from the start.
    Reason keepSpaceFree(HelperProgram &program) const;
    /// How long the program may take; of the output only what is there is known. Where that is
    /// asked, how far it has read the input is told, too.
    HelperProgram::Timeout timeout();
    /// Returns the reason where the program, which has failed, had no room to write.
    Reason whyNoRoom(const HelperProgram &program);
    /// Gives the output its name; the reason where that fails.
    Reason commit();

private:
    void tellProgress();

    RegularFile m_input;
    qint64 m_told = 0; // of the input
    NewFile &m_output;
};

} // namespace aux

#endif
