// SPDX-License-Identifier: MIT
#include "fs/newfile.h"
#include "passphrase.h"
#include "streams.h"

#include <aux/datahelper.h>

#include <QFile>

namespace auxctl
{

namespace
{

/// What is in the file of the first argument.
QByteArray contentOf(const Call &call)
{
    const Input input(call.argument(0));
    QFile file(input.path());
    if (!file.open(QIODevice::ReadOnly))
        failOn("open", file);
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        failOn("read", file);
    if (content.isEmpty())
        fail(QStringLiteral("%1 is empty").arg(input.path()));
    return content;
}

Result protect(const Call &call)
{
    const QByteArray key = contentOf(call);
    const QString phrase = passPhrase(call, PassPhraseKind::New);
    return plainText(checked(aux::DataHelper::encryptKeyB64(key, phrase)));
}

Result reveal(const Call &call)
{
    const OutputPlace output(call, 1);
    const QString text = QString::fromUtf8(contentOf(call)).trimmed();
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    const QByteArray key = checked(aux::DataHelper::decryptKeyB64(text, phrase));
    aux::NewFile file(output.file()); // nobody else's to read, also while it is written
    if (!file.open() || !file.write(key) || !file.commit())
        fail(QStringLiteral("cannot write %1").arg(output.file()));
    return output.deliver(output.file(), record({{"path", output.file()}}));
}

const Registration protectRow{
    {"key protect",
     "FILE",
     "key",
     "text",
     "Hide a key behind a pass phrase, as the setting /crypto/gpgkey holds it",
     {&passPhraseFileOption, &passPhraseDescriptorOption},
     protect}};
const Registration revealRow{{"key reveal",
                              "FILE KEYFILE",
                              "key",
                              "{path}",
                              "Write the key that a protected text hides to a file of mode 0600",
                              {&passPhraseFileOption, &passPhraseDescriptorOption},
                              reveal}};

} // namespace

} // namespace auxctl
