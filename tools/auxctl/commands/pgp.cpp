// SPDX-License-Identifier: MIT
#include "fs/fileidentity.h"
#include "openpgp/keyring.h"
#include "openpgp/openpgp.h"
#include "output.h"
#include "passphrase.h"
#include "progress.h"
#include "signatures.h"
#include "streams.h"
#include "supervisor.h"
#include "trustedkeys.h"

#include <aux/datahelper.h>

#include <QFileInfo>

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
    const Progress progress(input.path(), QFileInfo(input.path()).size());
    checkOn(input.name(), "not encrypted", aux::encryptFile(input.path(), output.file()));
    return output.committed(record({{"path", output.path()}}));
}

Result decrypt(const Call &call)
{
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    Input input(call.argument(0));
    Output output(call, call.argument(1), Access::Own, stopAgents);
    const Progress progress(input.path(), QFileInfo(input.path()).size());
    Record made{{"path", output.path()}};
    const auto keyring = call.value(keyringOption);
    auto [error, signature] = keyring
                                  ? aux::decryptFile(input.path(), output.file(), phrase, *keyring)
                                  : std::pair(aux::decryptFile(input.path(), output.file(), phrase),
                                              aux::DataHelper::Signature());
    checkOn(input.name(), "not decrypted", std::move(error));
    if (keyring)
        made += describe(signature);
    return output.committed(record(made));
}

Result sign(const Call &call)
{
    Input input(call.argument(0));
    const QString signature = call.arguments().size() > 1 ? call.argument(1) : signaturePath(input);
    if (aux::isSameFile(input.path(), signature))
        misuse("a signature cannot replace what it signs");
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    Output output(call, signature, Access::Common, stopAgents);
    checkOn(input.name(), "not signed", aux::signFile(input.path(), output.file(), phrase));
    return output.committed(record({{"path", output.path()}}));
}

Result verify(const Call &call)
{
    Input input(call.argument(0));
    const QString signature = call.arguments().size() > 1 ? call.argument(1) : signaturePath(input);
    Input made(signature);
    const QString keyring = call.value(keyringOption).value_or(trustedKeysPath);
    const Finding finding = verifySignature(input.name(), input.path(), made.path(), keyring);
    const Record fields = Record{{"path", input.name()}} + finding.fields;
    Result result = answered(!finding.isNo, record(fields));
    if (finding.isNo) {
        result.json = toObject(fields + Record{{"error", toJson(finding.reason)}});
        result.errors += finding.reason;
    }
    return result;
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
const Registration decryptRow{
    {"pgp decrypt",
     "MESSAGE FILE",
     "file",
     "{path: text, signer?: text, signed?: text}",
     "Decrypt a message with the imported key",
     {&keyringOption, &passPhraseFileOption, &passPhraseDescriptorOption, &forceOption},
     decrypt}};
const Registration signRow{{"pgp sign",
                            "FILE [SIGNATURE]",
                            "file",
                            "{path: text}",
                            "Sign a file with the imported key, in FILE.sig",
                            {&passPhraseFileOption, &passPhraseDescriptorOption, &forceOption},
                            sign}};
const Registration verifyRow{{"pgp verify",
                              "FILE [SIGNATURE]",
                              "signature",
                              "{path: text, trusted: bool, signer: text, signed: text, "
                              "error?: errors}",
                              "Check that a file is signed by a trusted key, in FILE.sig",
                              {&keyringOption},
                              verify}};
const Registration removeRow{
    {"pgp remove", "", "pgp", "text", "Remove the imported key", {}, removeKey}};

} // namespace

} // namespace auxctl
