// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_SIGNINGSCRIPT_H
#define AUX_TESTS_SIGNINGSCRIPT_H

#include <QString>

/// What rows about signatures are written in: gpg with keys of its own, and Sequoia's sq.
inline const QString words = R"sh(
gpg() {
    command gpg --batch --quiet --yes --pinentry-mode loopback --passphrase '' \
        --trust-model always "$@" 2>>log
}
at() { time=$1; shift; gpg --faked-system-time $time "$@"; }
make() { name=$1 algorithm=$2; shift 2; gpg "$@" --quick-generate-key $name $algorithm sign never; }
fingerprint() { gpg --with-colons --list-keys $1 | awk -F: '/^fpr/ { print $10; exit }'; }
retire() {
    name=$1; shift
    printf 'y\n2\n\ny\n' | command gpg --no-tty --command-fd 0 "$@" --gen-revoke $name 2>>log | gpg --import
}
certificate() { sed 's/^:---/---/' $GNUPGHOME/openpgp-revocs.d/$(fingerprint $1).rev | gpg --dearmor; }
revoke() { certificate $1 | gpg --import; }
trust() { gpg --export "$@" >keys; }
sign() { name=$1; shift; gpg "$@" --local-user $name --output sig --detach-sign file; }
seal() { gpg "$@" --recipient box --output in --encrypt file; }
sq_is_there() { sq --version 2>&1 | grep '^sq 0' >>log || exit 77; }
sq_key() {
    sq_is_there
    sq key generate --cipher-suite $1 --userid sq --export sq.key 2>>log
    sq key extract-cert --output keys sq.key
}
)sh";

/// Makes the keys that the rows name.
inline const QString keys = R"sh(
echo 's2k-count 65536' >$GNUPGHOME/gpg-agent.conf
make ed ed25519; make rsa rsa3072; make nist nistp256; make stranger ed25519
make sha1 ed25519 --cert-digest-algo SHA1
make parts ed25519; gpg --quick-add-key $(fingerprint parts) ed25519 sign
gpg --quick-generate-key box future-default
gpg --quick-generate-key certifying ed25519 cert
make safe ed25519 --passphrase secret
at 20200101T000000 --quick-generate-key gone ed25519 sign 1y
at 20370101T000000 --quick-generate-key future ed25519 sign never
at 20200101T000000 --quick-generate-key lost ed25519 sign never
at 20200101T000000 --quick-generate-key outworn ed25519 sign never
at 20200101T000000 --quick-generate-key shabby ed25519 sign never
)sh";

#endif
