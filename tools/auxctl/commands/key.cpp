// SPDX-License-Identifier: MIT
#include "commands.h"
#include "fs/newfile.h"
#include "help.h"
#include "passphrase.h"
#include "streams.h"

#include <aux/datahelper.h>

#include <QFile>

namespace auxctl
{

namespace
{

Outcome protect(const QByteArray &key, const QString &passPhrase)
{
    auto [error, text] = aux::DataHelper::encryptKeyB64(key, passPhrase);
    return error.hasError() ? failed(std::move(error)) : plainText(text);
}

Outcome reveal(const QString &text, const QString &passPhrase, const OutputPlace &output)
{
    auto [error, key] = aux::DataHelper::decryptKeyB64(text, passPhrase);
    if (error.hasError())
        return failed(std::move(error));
    aux::NewFile file(output.file()); // nobody else's to read, also while it is written
    if (!file.open() || !file.write(key) || !file.commit())
        return failed(QStringLiteral("cannot write %1").arg(output.file()));
    return output.deliver(output.file(), record({{"path", output.file()}}));
}

/// Runs the function with what is in the file of the first argument.
Outcome withContent(const Invocation &invocation,
                    const std::function<Outcome(const QByteArray &)> &function)
{
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return failed(fileProblem("open", file));
        const QByteArray content = file.readAll();
        if (file.error() != QFileDevice::NoError)
            return failed(fileProblem("read", file));
        return content.isEmpty() ? failed(QStringLiteral("%1 is empty").arg(path))
                                 : function(content);
    });
}

} // namespace

Outcome keyProtect(const Invocation &invocation)
{
    return withContent(invocation, [&](const QByteArray &key) {
        return withPassPhrase(invocation, PassPhraseKind::New,
                              [&](const QString &passPhrase) { return protect(key, passPhrase); });
    });
}

Outcome keyReveal(const Invocation &invocation)
{
    const OutputPlace output(invocation, 1);
    if (output.error().hasError())
        return failed(output.error());
    return withContent(invocation, [&](const QByteArray &content) {
        const QString text = QString::fromUtf8(content).trimmed();
        return withPassPhrase(invocation, PassPhraseKind::Known, [&](const QString &passPhrase) {
            return reveal(text, passPhrase, output);
        });
    });
}

} // namespace auxctl
