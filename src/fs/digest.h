// SPDX-License-Identifier: MIT
#ifndef AUX_FS_DIGEST_H
#define AUX_FS_DIGEST_H

#include <QByteArray>
#include <QString>

#include <memory>

struct gcry_md_handle;

namespace aux
{

/// The SHA-256 digest (FIPS 180-4) of what is added piece by piece.
class Digest
{
public:
    static constexpr int size = 32; // of its bytes

    Digest();

    void add(const char *data, qint64 length);
    /// The 32 bytes of what was added, to which nothing can be added any more; empty where the
    /// system's cryptographic library refuses to work.
    QByteArray raw() const;
    /// The same as lower-case hexadecimal text.
    QString hex() const;

private:
    struct Closing {
        void operator()(gcry_md_handle *handle) const;
    };
    std::unique_ptr<gcry_md_handle, Closing> m_handle;
};

} // namespace aux

#endif
