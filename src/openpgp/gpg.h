// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_GPG_H
#define AUX_OPENPGP_GPG_H

#include "openpgp/filepair.h"
#include "openpgp/gpglisting.h"
#include "openpgp/keyring.h"

namespace aux::gpg
{

/// One run of gpg or gpgv: no settings of the machine, no questions, nothing over the network, in
/// 256 MiB of memory.
class Run
{
public:
    /// gpg with this home directory, and nothing else of the machine's keys.
    explicit Run(const QString &home = Keyring::path);
    /// gpgv, which needs no home directory, no agent and no trust database.
    static Run gpgv();

    /// Lets it read this under a name, which is returned; null with errno where that cannot be.
    QString show(const QByteArray &content);
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
    Run(QString name, QStringList options);
    int inherit(int descriptor);

    QString m_name;
    HelperProgram m_program;
    QStringList m_options;
    std::vector<Descriptor> m_inherited;
    Status m_status;
};

} // namespace aux::gpg

#endif
