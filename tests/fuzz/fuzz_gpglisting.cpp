// SPDX-License-Identifier: MIT
// Reads whatever gpg may print as a listing of keys and as status lines. Only what it says in full
// is a message that was decrypted.
#include "openpgp/gpglisting.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    for (const aux::gpg::Key &key : aux::gpg::parseKeys(text)) {
        if (key.whyUseless(aux::gpg::Key::Use::Encrypting, 0).isNone() &&
            !key.whyInvalid(0).isNone())
            std::abort();
    }
    const aux::gpg::Status status(text);
    const bool isDone = status.has("DECRYPTION_KEY") && status.has("DECRYPTION_OKAY");
    if (status.whyNotDecrypted(true).isNone() != isDone || status.whyNotDecrypted(false).isNone() ||
        (status.isSecretKeyLost() && !status.has("IMPORT_RES")))
        std::abort();
    return 0;
}
