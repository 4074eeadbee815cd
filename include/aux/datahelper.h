// SPDX-License-Identifier: MIT
#ifndef AUX_DATAHELPER_H
#define AUX_DATAHELPER_H

#include <aux/error.h>
#include <aux/export.h>

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <utility>

namespace aux
{

/// Packs files into verified containers and unpacks them, reads USB id lists, hides keys behind a
/// pass phrase, and encrypts and signs files with OpenPGP.
/// @shown{containers,unpack}
///
/// A container is one file: a magic that names the payload's type, the payload's SHA-256 digest,
/// its file name, its length and the payload itself.
///
/// *Guarantees*: no state; any thread may call; blocks while the files are read and written, in
/// pieces of 64 KiB whatever their size. Only regular files and links to them are taken: a FIFO or
/// device is refused and never waited for. After success the written file is complete, though not
/// flushed to the storage (FsHelper's fileMove does that). A container that could not be completed
/// is removed. Unpacking never reads outside the container and, with the stored name, never writes
/// outside the output directory (unless a link there leads out of it), whatever the container
/// holds. An error that the system has caused says so in its extra data: "PATH: EXPLANATION".
///
/// The digest shows that a container arrived as it was packed. It does not show who packed it:
/// whoever changes the payload can put the right digest beside it. A signature does.
class AUX_EXPORT DataHelper
{
public:
    /// What a container holds.
    enum class ZEL_FILE_TYPE : int {
        DDDF,    ///< tachograph download
        LOGF,    ///< log
        CFGF,    ///< configuration
        GPGF,    ///< OpenPGP key
        UPDF,    ///< update
        Unknown, ///< what unpacking gives for an unknown magic; cannot be packed
    };

    /// Who has signed something, and when.
    struct Signature {
        QString fingerprint; ///< of the primary key, also where a subkey has signed: upper case hex
        QDateTime time;      ///< as the signer's clock said, in UTC
    };

    /// Makes a type a key of QHash. @shown{containers,types}
    friend uint qHash(ZEL_FILE_TYPE type, uint seed = 0) noexcept
    {
        return ::qHash(static_cast<int>(type), seed);
    }

    DataHelper() = default;

    /// Packs the file `inFile` into a new container `outFile`, which is created or truncated.
    ///
    /// The container stores the last component of `inFile` as the name. The payload may have up
    /// to 2^32 - 1 bytes and is read once: what is copied is what the digest is of. Until all of it
    /// is there `outFile` has no magic.
    ///
    /// @fails with 10001 and
    /// - "packFileToBinContainer: Failed to open file for reading"
    /// - "packFileToBinContainer: Failed to open file for writing": also for a larger payload and
    ///   where both paths lead to one file; an existing `outFile` is then left as it is
    /// - "packFileToBinContainer: Invalid Filetype given"
    /// - "packFileToBinContainer: Failed to write to output file": also when `inFile` changes its
    ///   size meanwhile
    /// - the error of FsHelper::generateChecksum, which also goes to the debug log.
    ///
    /// Every failure after `outFile` was opened removes it. @shown{containers,pack}
    static Error packFileToBinContainer(const QString &inFile, ZEL_FILE_TYPE type,
                                        const QString &outFile);

    /// Writes the payload of the container `inFile` to a file in `outDir` and checks its digest.
    ///
    /// `outFile` is the name to use, given as it is to the file system; empty for the name stored
    /// in the container. On success it is replaced by the path that was written, `outDir` + "/" +
    /// name, which is in the root directory for an empty `outDir`. `type` is set as soon as the
    /// magic has been read, also when a later step fails. Bytes after the payload are ignored.
    ///
    /// @fails with 10001 and
    /// - "unpackFileFromBinContainer: Failed to open file for reading": also where the medium fails
    ///   or the file becomes shorter meanwhile; no output is left then
    /// - "unpackFileFromBinContainer: Input file too small": shorter than it says, or than 50 bytes
    /// - "unpackFileFromBinContainer: Invalid magic"
    /// - "unpackFileFromBinContainer: Failed to open file for writing": also where the stored name
    ///   is no plain file name, or the output would be the container itself
    /// - "unpackFileFromBinContainer: Failed to write to output file"; the output is removed
    /// - "unpackFileFromBinContainer: SHA256sum check failed"; the output deliberately stays
    /// - the error of FsHelper::generateChecksum, which also goes to the debug log; the output
    ///   stays. @shown{containers,unpack}
    static Error unpackFileFromBinContainer(const QString &inFile, ZEL_FILE_TYPE &type,
                                            const QString &outDir, QString &outFile);

    /// Reads a list of USB vendor and product ids, as in "0x1234:0xabcd;5678:ef01", and replaces
    /// `list` by one "vendor:product" per entry, in order, without the prefixes: "1234:abcd",
    /// "5678:ef01". An empty text is an empty list.
    ///
    /// Beyond its one ":" an entry is deliberately not checked: no digits, no blanks, no case; "0X"
    /// is no prefix.
    ///
    /// @fails with 10002 "USB VID:PID list syntax error", and then leaves `list` as
    /// it was, where an entry is no pair; a ";" at the end makes an empty entry. Neither blocks
    /// nor writes debug lines. @shown{containers,usbIds}
    static Error vIdpIdListFromString(const QString &text, QStringList &list);

    /// @name Keys behind a pass phrase
    /// XOR with a pass phrase hides a key from a casual look and is no encryption: the same pass
    /// phrase for two keys, or a few known bytes of one key (an OpenPGP key has many), give the
    /// pass phrase away. A wrong pass phrase is not noticed, it gives another key. Nothing here
    /// blocks but for the storage, and nothing writes debug lines.
    /// @{

    /// Returns data XOR key, the key repeated as often as need be; an empty key returns the data.
    /// @shown{keys,xor}
    static QByteArray xorByteArray(const QByteArray &data, const QByteArray &key);
    /// Returns the key XOR the UTF-8 bytes of the pass phrase as base64 (RFC 4648) in one line,
    /// the form of the setting "/crypto/gpgkey"; empty on failure and for an empty key.
    ///
    /// @fails with 10001 "encryptKeyB64: pass phrase is empty". @shown{keys,hide}
    [[nodiscard]] static std::pair<Error, QString> encryptKeyB64(const QByteArray &key,
                                                                 const QString &passPhrase);
    /// Returns the key of a text that encryptKeyB64 made; empty on failure.
    ///
    /// @fails with 10001 and "decryptKeyB64: pass phrase is empty" or "decryptKeyB64: key is not
    /// base64": also where the text has blanks, line breaks or no padding. @shown{keys,show}
    [[nodiscard]] static std::pair<Error, QByteArray> decryptKeyB64(const QString &keyB64,
                                                                    const QString &passPhrase);
    /// Writes the key of a text that encryptKeyB64 made to a new file in the location Tmp, which
    /// only the calling user may read (mode 0600), and returns its path; empty on failure. The
    /// caller removes the file.
    ///
    /// @fails with 10001, the reasons of decryptKeyB64 behind "decryptKeyB64StoreToTemp: ", and
    /// "decryptKeyB64StoreToTemp: Failed to write to output file"; nothing is left then.
    /// @shown{keys,import}
    [[nodiscard]] static std::pair<Error, QString>
    decryptKeyB64StoreToTemp(const QString &keyB64, const QString &passPhrase);
    /// @}

    /// @name Files through programs
    /// Each of these runs a program over the file `inFile`, a regular file of any size, in constant
    /// memory. The result gets the name `outFile` only when it is complete and on the storage:
    /// until then a file of that name stays as it is. After a failure nothing new is there; after a
    /// kill or a power cut at the very end, or on a file system that knows no unnamed files, a
    /// hidden file of mode 0600 may be. The result has mode 0600 and replaces a file or link of
    /// that name; both paths may be the same. The program is found in PATH, and it is killed after
    /// half a minute and a second more for each 256 KiB that it has read and written, or when the
    /// calling thread ends; that is how long a call blocks at the most, and seconds more where
    /// something has to be ended. It does not matter which signals the process blocks or ignores,
    /// SIGCHLD included. No debug lines are written.
    /// @{

    /// Encodes a file as base64 (RFC 4648, lines of 76 characters), or decodes one, with the
    /// program "base64".
    ///
    /// @fails with 10001, "base64: " and
    /// - "Failed to open file for reading": `inFile` is missing, not readable or no regular file
    /// - "Failed to open file for writing": `outFile` cannot be made, or is a directory or device,
    ///   or its directory cannot be read
    /// - "Failed to write to output file": the storage is full or broken
    /// - "base64 cannot be started", "base64 did not end in time", "base64 was killed"
    /// - "input is not base64", "base64 failed". @shown{keys,base64Either}
    static Error base64(const QString &inFile, const QString &outFile, bool decode);
    /// Is base64() that encodes, also in its failures. @shown{keys,base64}
    static Error base64encode(const QString &inFile, const QString &outFile);
    /// Is base64() that decodes, also in its failures. @shown{keys,base64}
    static Error base64decode(const QString &inFile, const QString &outFile);

    /// Makes the temporary keyring anew and imports the key of a file, armoured or binary, with the
    /// program "gpg". A key pair serves for both directions, a public key alone for encryptFileGPG.
    ///
    /// The keyring "/tmp/gpg-temp-keyring" holds one key until removeKeypairGPG, the next import or
    /// the next start of the machine. It is the same for the whole machine: operations on it take
    /// turns, those of other processes included, and wait for it for five minutes at most. Nothing
    /// but what it holds is used, and nothing goes to the network; gpg-agent keeps no pass phrase
    /// and is ended before each operation returns. gpg gets 256 MiB of memory: a key or message
    /// that makes it want more is an error.
    ///
    /// @fails with 10001, "importKeypairGPG: " and
    /// - that of base64 for reading
    /// - "gpg cannot be started", "gpg did not end in time", "gpg was killed"
    /// - "file holds no key", "file holds no whole key", "file holds more than one key"
    /// - "key was made after what the clock says now": the clock of the terminal is wrong
    /// - "key is not valid": it lacks a valid signature of its own
    /// - "/tmp/gpg-temp-keyring is not this program's own directory": it is no directory, a link,
    ///   another user's or open to others; it is left as it is
    /// - "/tmp/gpg-temp-keyring cannot be made", "/tmp/gpg-temp-keyring cannot be removed"
    /// - "/tmp/gpg-temp-keyring is in use"
    /// - "no room in /tmp/gpg-temp-keyring"
    /// - "gpg-agent did not take the secret key": it is not installed, say
    /// - "gpg-agent cannot be ended".
    ///
    /// A file that cannot be read leaves an imported key as it is, and so does a keyring that
    /// cannot be removed; after any other failure there is none. @shown{openpgp,encrypt}
    static Error importKeypairGPG(const QString &keyFile);
    /// Encrypts a file to the imported key: a binary OpenPGP message (RFC 4880) that does not hold
    /// the file's name.
    ///
    /// @fails with 10001, "encryptFileGPG: " and
    /// - those of base64 on files
    /// - "gpg cannot be started", "gpg did not end in time", "gpg was killed"
    /// - "no key is imported", "gpg failed", "gpg-agent cannot be ended"
    /// - "no room in /tmp/gpg-temp-keyring", "/tmp/gpg-temp-keyring is in use"
    /// - "/tmp/gpg-temp-keyring is not this program's own directory"
    /// - "key has expired", "key is revoked", "key is not valid", "key cannot encrypt"
    /// - "key was made after what the clock says now". @shown{openpgp,encrypt}
    static Error encryptFileGPG(const QString &inFile, const QString &outFile);
    /// Decrypts a message with the imported key; an empty pass phrase for a key without one. A key
    /// that has expired or was revoked still decrypts. What a message decrypts to leaves 64 MiB of
    /// the output's file system free.
    ///
    /// @fails with 10001, "decryptFileGPG: " and
    /// - those of base64 on files
    /// - "gpg cannot be started", "gpg did not end in time", "gpg was killed"
    /// - "no key is imported", "gpg-agent cannot be ended"
    /// - those of encryptFileGPG on "/tmp/gpg-temp-keyring"
    /// - "pass phrase contains a line break or NUL"
    /// - "pass phrase is too long": of more than 255 bytes
    /// - "pass phrase cannot be handed to gpg"
    /// - "wrong pass phrase"
    /// - "no secret key for this message": it is to another key or to a pass phrase, or only the
    ///   public key was imported
    /// - "message is damaged or was tampered with": also where it is cut off
    /// - "signature of the message cannot be verified": such messages the one below takes
    /// - "input is no encrypted message". @shown{openpgp,decrypt}
    static Error decryptFileGPG(const QString &inFile, const QString &outFile,
                                const QString &passPhrase);
    /// Decrypts a message that is also signed, and verifies it as verifyFileGPG does, with the keys
    /// of `keyringFile` alone; returns who has signed it. The result gets its name only where both
    /// hold. For a while the output's file system holds the message twice.
    ///
    /// @fails with 10001, "decryptFileGPG: " and
    /// - those of the other decryptFileGPG
    /// - those of verifyFileGPG, but for the files that it reads beside the keyring
    /// - "message is not signed". @shown{openpgp,decryptSigned}
    [[nodiscard]] static std::pair<Error, Signature> decryptFileGPG(const QString &inFile,
                                                                    const QString &outFile,
                                                                    const QString &passPhrase,
                                                                    const QString &keyringFile);
    /// Signs a file with the imported key pair: a detached, binary OpenPGP signature (RFC 4880).
    ///
    /// @fails with 10001, "signFileGPG: " and
    /// - those of encryptFileGPG, but for "key cannot encrypt"
    /// - those of decryptFileGPG on the pass phrase
    /// - "key cannot sign"
    /// - "no secret key to sign with": only the public key was imported. @shown{openpgp,sign}
    static Error signFileGPG(const QString &file, const QString &signatureFile,
                             const QString &passPhrase);
    /// Verifies a detached OpenPGP signature over a file, by a key of a file of trusted public keys
    /// ("gpg --export"), with the program "gpgv"; returns who has signed it, and when. Signature
    /// and keys may be binary or armoured. Uses neither the temporary keyring nor any other key of
    /// the machine, waits for nobody, writes nothing.
    ///
    /// Of several signatures at least one must be good; those by keys that are not trusted do not
    /// count, and none may have another fault. That nobody changes the file afterwards is the
    /// caller's concern. gpgv gets 256 MiB of memory.
    ///
    /// @fails with 10001, "verifyFileGPG: ", no signature, and
    /// - "Failed to open file for reading": `file` is missing, not readable or no regular file
    /// - "signature cannot be read", "keyring cannot be read": the same of the other two
    /// - "signature is too large", of more than 64 KiB; "keyring is too large", of more than 1 MiB
    /// - "keyring holds a revocation by a weak digest": that key would count as good
    /// - "keyring holds no public key": it does not begin with one, or is cut off
    /// - "signature is not by a trusted key", "file does not match the signature"
    /// - "signature is damaged": it is no detached signature, or cut off, or of an unknown kind
    /// - "signature does not cover every byte": it was made in text mode, without the line ends
    /// - "signature uses a weak digest": SHA-1, MD5 or RIPEMD-160
    /// - "signature has expired", "key has expired"
    /// - "key is revoked": before or after it has signed, wherever in the file that stands
    /// - "key is not valid": it lacks a valid signature of its own with a better digest than those,
    ///   which makes it none that is trusted for gpgv 2.4, or is younger than the signature
    /// - "signature was made after what the clock says now": also where the key was
    /// - "gpgv failed", "gpgv cannot be started", "gpgv did not end in time", "gpgv was killed".
    /// @shown{openpgp,verify}
    [[nodiscard]] static std::pair<Error, Signature>
    verifyFileGPG(const QString &file, const QString &signatureFile, const QString &keyringFile);
    /// Removes the temporary keyring and ends what runs on it; no keyring is success.
    ///
    /// @fails with 10001, "removeKeypairGPG: " and
    /// - "/tmp/gpg-temp-keyring is not this program's own directory"
    /// - "/tmp/gpg-temp-keyring is in use"
    /// - "/tmp/gpg-temp-keyring cannot be removed", "gpg-agent cannot be ended".
    /// @shown{openpgp,encrypt}
    static Error removeKeypairGPG();
    /// @}
};

} // namespace aux

#endif
