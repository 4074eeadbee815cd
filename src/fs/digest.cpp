// SPDX-License-Identifier: MIT
#include "fs/digest.h"

#include <gcrypt.h>

namespace aux
{

namespace
{

/// Makes libgcrypt ready, unless the application has done so in its own way. No secrets are handed
/// to it here: it needs no secure memory.
bool makeReady()
{
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) != 0)
        return true;
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    return true;
}

} // namespace

Digest::Digest()
{
    [[maybe_unused]] static const bool ready = makeReady(); // once, also with many threads
    gcry_md_hd_t handle = nullptr;
    if (gcry_md_open(&handle, GCRY_MD_SHA256, 0) == 0)
        m_handle.reset(handle);
}

void Digest::add(const char *data, qint64 length)
{
    if (m_handle)
        gcry_md_write(m_handle.get(), data, static_cast<std::size_t>(length));
}

QByteArray Digest::raw() const
{
    if (!m_handle)
        return {};
    const unsigned char *bytes = gcry_md_read(m_handle.get(), GCRY_MD_SHA256);
    return {reinterpret_cast<const char *>(bytes), size};
}

QString Digest::hex() const
{
    return QString::fromLatin1(raw().toHex());
}

void Digest::Closing::operator()(gcry_md_handle *handle) const
{
    gcry_md_close(handle);
}

} // namespace aux
