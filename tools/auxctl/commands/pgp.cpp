// SPDX-License-Identifier: MIT
#include "openpgp/keyring.h"
#include "openpgp/openpgp.h"
#include "passphrase.h"
#include "streams.h"
#include "supervisor.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

/// Ends what gpg leaves running when a signal ends it, in this process' turn.
void stopAgents()
{
    static_cast<void>(aux::Keyring().requireKeyring());
}

Result importKey(const Call &call)
{
    Input input(call.argument(0));
    supervise([] { static_cast<void>(aux::DataHelper::removeKeypairGPG()); }); // half a key is none
    checkOn(input.name(), "not imported", aux::DataHelper::importKeypairGPG(input.path()));
    return plainText("imported");
}

Result encrypt(const Call &call)
{
    Input input(call.argument(0));
    Output output(call, call.argument(1), Access::Own, stopAgents);
    checkOn(input.name(), "not encrypted", aux::encryptFile(input.path(), output.file()));
    return output.committed(record({{"path", output.path()}}));
}

Result decrypt(const Call &call)
{
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    Input input(call.argument(0));
    Output output(call, call.argument(1), Access::Own, stopAgents);
    checkOn(input.name(), "not decrypted", aux::decryptFile(input.path(), output.file(), phrase));
    return output.committed(record({{"path", output.path()}}));
}

Result removeKey(const Call &)
{
    check(aux::DataHelper::removeKeypairGPG());
    return plainText("removed");
}

const Registration importRow{{"pgp import",
                              "KEYFILE",
                              "pgp",
                              "text",
                              "Import an OpenPGP key for the commands below",
                              {},
                              importKey}};
const Registration encryptRow{{"pgp encrypt",
                               "FILE MESSAGE",
                               "file",
                               "{path: text}",
                               "Encrypt a file to the imported key",
                               {&forceOption},
                               encrypt}};
const Registration decryptRow{{"pgp decrypt",
                               "MESSAGE FILE",
                               "file",
                               "{path: text}",
                               "Decrypt a message with the imported key",
                               {&passPhraseFileOption, &passPhraseDescriptorOption, &forceOption},
                               decrypt}};
const Registration removeRow{
    {"pgp remove", "", "pgp", "text", "Remove the imported key", {}, removeKey}};

} // namespace

} // namespace auxctl
