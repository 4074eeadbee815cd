// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_GPG_H
#define AUX_OPENPGP_GPG_H

#include "openpgp/filepair.h"
#include "openpgp/gpglisting.h"

namespace aux::gpg
{

/// One run of gpg on the keyring: "/tmp/gpg-temp-keyring" and nothing else of the machine's keys
/// and settings, no questions, nothing over the network, in 256 MiB of memory.
class Run
{
public:
    Run();

    /// Gives it a pass phrase, through a descriptor; the reason where that cannot be.
    Reason setPassPhrase(const QString &passPhrase);
    HelperProgram &program() { return m_program; }

    /// Runs it. The reason where it did not come to its end.
    Reason execute(
        const QStringList &command,
        const HelperProgram::Timeout &timeout = [] { return HelperProgram::timeoutFor(0); });

    bool hasSucceeded() const { return m_program.hasSucceeded(); }
    const Status &status() const { return m_status; }

private:
    HelperProgram m_program;
    QStringList m_options;
    Descriptor m_secret;
    Status m_status;
};

} // namespace aux::gpg

#endif
