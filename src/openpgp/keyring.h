// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_KEYRING_H
#define AUX_OPENPGP_KEYRING_H

#include "error/reason.h"
#include "fs/regularfile.h"

namespace aux
{

/// The home directory of gpg that holds the imported key for as long as it is needed, held by one
/// operation of the whole machine at a time.
///
/// The directory itself is what is locked: nobody else may open it, and when its holder dies the
/// kernel gives it free. What has its name and was not made here is never used, followed or
/// removed.
class Keyring
{
public:
    static const QString path;
    static const Reason noKey;
    static const Reason noRoom;

    Keyring() = default;
    ~Keyring();
    Keyring(const Keyring &) = delete;
    Keyring &operator=(const Keyring &) = delete;

    /// Takes the turn, with nothing running on the keyring. The reason where it cannot be used.
    Reason requireKeyring();
    /// The same for an empty one, which is made if need be.
    Reason make();
    /// Removes it, with what runs on it; the turn must have been taken.
    Reason remove();

    /// Ends what gpg has left running on it. The reason where something could not be ended.
    static Reason stopAgents();
    /// Returns whether gpg could write to it; where not, what gpg says is not to be trusted.
    static bool hasRoom();

private:
    enum class Missing { Refuse, Make };

    Reason takeTurn(Missing missing);
    Reason open(Missing missing);
    bool hasName() const;

    Descriptor m_directory; // locked while it is open
};

} // namespace aux

#endif
