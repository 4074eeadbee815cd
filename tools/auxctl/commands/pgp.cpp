// SPDX-License-Identifier: MIT
#include "passphrase.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

Result importKey(const Call &call)
{
    const Input input(call.argument(0));
    check(aux::DataHelper::importKeypairGPG(input.path()));
    return plainText("imported");
}

Result encrypt(const Call &call)
{
    const OutputPlace output(call, 1);
    const Input input(call.argument(0));
    const Progress progress(input.path());
    check(aux::DataHelper::encryptFileGPG(input.path(), output.file()));
    return output.deliver(output.file(), record({{"path", output.file()}}));
}

Result decrypt(const Call &call)
{
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    const OutputPlace output(call, 1);
    const Input input(call.argument(0));
    const Progress progress(input.path());
    check(aux::DataHelper::decryptFileGPG(input.path(), output.file(), phrase));
    return output.deliver(output.file(), record({{"path", output.file()}}));
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
                               "message",
                               "{path}",
                               "Encrypt a file to the imported key",
                               {},
                               encrypt}};
const Registration decryptRow{{"pgp decrypt",
                               "MESSAGE FILE",
                               "file",
                               "{path}",
                               "Decrypt a message with the imported key",
                               {&passPhraseFileOption, &passPhraseDescriptorOption},
                               decrypt}};
const Registration removeRow{
    {"pgp remove", "", "pgp", "text", "Remove the imported key", {}, removeKey}};

} // namespace

} // namespace auxctl
