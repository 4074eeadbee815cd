// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"
#include "passphrase.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

using Conversion = std::function<aux::Error(const QString &, const QString &)>;

Outcome convert(const Invocation &invocation, const Conversion &conversion)
{
    const OutputPlace output(invocation, 1);
    if (output.error().hasError())
        return failed(output.error());
    return withInput(invocation.argument(0), [&](const QString &path) {
        const Progress progress(path);
        aux::Error error = conversion(path, output.file());
        if (error.hasError())
            return failed(std::move(error));
        return output.deliver(output.file(), record({{"path", output.file()}}));
    });
}

} // namespace

Outcome pgpImport(const Invocation &invocation)
{
    return withInput(invocation.argument(0), [](const QString &path) {
        return report(aux::DataHelper::importKeypairGPG(path), "imported");
    });
}

Outcome pgpEncrypt(const Invocation &invocation)
{
    return convert(invocation, aux::DataHelper::encryptFileGPG);
}

Outcome pgpDecrypt(const Invocation &invocation)
{
    return withPassPhrase(
        invocation, PassPhraseKind::Known, [&invocation](const QString &passPhrase) {
            return convert(invocation, [&](const QString &message, const QString &file) {
                return aux::DataHelper::decryptFileGPG(message, file, passPhrase);
            });
        });
}

Outcome pgpRemove(const Invocation &)
{
    return report(aux::DataHelper::removeKeypairGPG(), "removed");
}

} // namespace auxctl
