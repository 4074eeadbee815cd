// SPDX-License-Identifier: MIT
// Reads whatever gpgv may print as status lines, and whatever may stand in a file of keys or
// signatures. Only what gpgv says in full is a good signature, and none of the faults beside it.
#include "openpgp/revocations.h"
#include "openpgp/signatures.h"
#include "require.h"

namespace
{

constexpr qint64 now = 1700000000;

void judge(const QByteArray &text)
{
    const aux::gpg::Status status(text);
    for (const bool hasSucceeded : {false, true}) {
        const auto [reason, signature] = aux::gpg::judgeSignatures(status, hasSucceeded, now);
        if (!reason.isNone())
            continue;
        require(status.has("GOODSIG") && status.has("VALIDSIG"));
        require(hasSucceeded || status.has("ERRSIG"));
        require(signature.time.toSecsSinceEpoch() <= now);
        for (const char *fault : {"NODATA", "ERROR", "FAILURE"})
            require(!status.has(fault));
        for (const aux::gpg::Status &each : status.from("NEWSIG")) {
            for (const char *fault : {"BADSIG", "EXPSIG", "EXPKEYSIG", "REVKEYSIG"})
                require(!each.has(fault));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    judge(text);
    const QByteArray packets = aux::gpg::dearmoured(text);
    QByteArray parts;
    for (const aux::gpg::Packet &packet : aux::gpg::packetsOf(packets))
        parts += packet.content;
    require(packets.size() <= text.size());
    require(parts.isEmpty() || parts == packets);
    require(aux::gpg::withRevocationsInPlace(aux::gpg::packetsOf(packets)).size() == parts.size());
    return 0;
}
