// SPDX-License-Identifier: MIT
#include "openpgp/packets.h"
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
    QFile file;
    input.open(file);
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        failOn("read", file);
    if (content.isEmpty())
        fail(QStringLiteral("%1 is empty").arg(input.name()));
    return content;
}

Result protect(const Call &call)
{
    const QByteArray key = contentOf(call);
    const QString phrase = passPhrase(call, PassPhraseKind::New);
    return plainText(checked(aux::DataHelper::encryptKeyB64(key, phrase)));
}

/// Whether it begins like an OpenPGP key, in the clear or in an armour.
bool looksLikeKey(const QByteArray &key)
{
    const int tag = aux::gpg::packetTag(key.at(0)).value_or(0);
    return tag == aux::gpg::tag::secretKey || tag == aux::gpg::tag::publicKey ||
           key.startsWith("-----BEGIN PGP ");
}

Result reveal(const Call &call)
{
    const QString text = QString::fromUtf8(contentOf(call)).trimmed();
    const QString phrase = passPhrase(call, PassPhraseKind::Known);
    const QByteArray key = checked(aux::DataHelper::decryptKeyB64(text, phrase));
    Output output(call, call.argument(1), Access::Own);
    output.write(key);
    Result result = record({{"path", output.path()}});
    if (!looksLikeKey(key)) // the pass phrase is not checked by anything else
        result.warnings += "this is no OpenPGP key; was the pass phrase right?";
    return output.commit(result);
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
                              "file",
                              "{path: text}",
                              "Write the key that a protected text hides to a file of mode 0600",
                              {&passPhraseFileOption, &passPhraseDescriptorOption, &forceOption},
                              reveal}};

} // namespace

} // namespace auxctl
