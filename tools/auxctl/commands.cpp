// SPDX-License-Identifier: MIT
#include "commands.h"
#include "containerfile.h"
#include "passphrase.h"

namespace auxctl
{

const Option yesOption{"yes", nullptr, "Do not ask"};

const std::vector<Option> &commonOptions()
{
    static const std::vector<Option> options{
        {"json", nullptr, "Print one JSON document"},
        {"debug", nullptr, "Print the library's diagnostic lines to standard error"},
        {"h|help", nullptr, "Print help"},
        {"version", nullptr, "Print the version"},
    };
    return options;
}

namespace
{

QByteArray typeSummary()
{
    QStringList types = typeNames();
    types.first() += " (default)";
    return "What it holds: " + types.join(", ").toUtf8();
}

const QByteArray types = typeSummary();

// clang-format off
const Option app{"app", "ORG/NAME", "The application whose settings are meant"};
const Option name{"name", "NAME", "Use this file name"};
const std::vector<Command> allCommands{
    {"config show", "[KEY...]", "settings", "[{key, value, default, isDefault}]",
     "Show settings; a * marks what differs from the default",
     {app, {"reveal", nullptr, "Show secrets too"}}, configShow},
    {"config get", "KEY", "value", "value",
     "Print the value of a setting", {app}, configGet},
    {"config set", "KEY=VALUE...", "set", "{KEY: value}",
     "Set all of these settings, or none", {app}, configSet},
    {"config changed", "[AREA]", "changed", "[{key, value, default}]",
     "Show settings that differ from their defaults", {app}, configChanged},
    {"config validate", "FILE", "valid", "true",
     "Check a configuration file before it is taken into use", {}, configValidate},
    {"config schema", "", "schema", "JSON Schema",
     "Print a JSON Schema for configuration files", {}, configSchema},
    {"container pack", "FILE CONTAINER", "container", "{path, type, name, size, digest, complete}",
     "Pack a file into a container, which is overwritten",
     {{"type", "TYPE", types.constData()}, name}, containerPack},
    {"container unpack", "CONTAINER [DIRECTORY]", "unpacked", "{path, type}",
     "Unpack a container and check its digest",
     {name, {"force", nullptr, "Overwrite an existing file"}}, containerUnpack},
    {"container info", "CONTAINER", "container", "{type, name, size, digest, complete}",
     "Show what the header of a container says", {}, containerInfo},
    {"container verify", "CONTAINER", "container", "{type, name, size, digest, complete, valid}",
     "Check the digest of a container, writing nothing", {}, containerVerify},
    {"key protect", "FILE", "key", "text",
     "Hide a key behind a pass phrase, as the setting /crypto/gpgkey holds it", passPhraseOptions(), keyProtect},
    {"key reveal", "FILE KEYFILE", "key", "{path}",
     "Write the key that a protected text hides to a file of mode 0600", passPhraseOptions(), keyReveal},
    {"pgp import", "KEYFILE", "pgp", "text",
     "Import an OpenPGP key for the commands below", {}, pgpImport},
    {"pgp encrypt", "FILE MESSAGE", "message", "{path}",
     "Encrypt a file to the imported key", {}, pgpEncrypt},
    {"pgp decrypt", "MESSAGE FILE", "file", "{path}",
     "Decrypt a message with the imported key", passPhraseOptions(), pgpDecrypt},
    {"pgp remove", "", "pgp", "text",
     "Remove the imported key", {}, pgpRemove},
    {"files name", "LOCATION", "path", "text",
     "Make up a unique file name", {}, filesName},
    {"files list", "LOCATION", "files", "[text]",
     "List the readable files of a location", {}, filesList},
    {"files count", "LOCATION", "count", "number",
     "Count the readable files of a location", {}, filesCount},
    {"files free", "LOCATION BYTES", "free", "true or false",
     "Check for free space; BYTES may end in K, M or G", {}, filesFree},
    {"files checksum", "FILE", "checksum", "text",
     "Print the SHA-256 checksum of a file", {}, filesChecksum},
    {"files verify", "FILE CHECKSUM", "valid", "true or false",
     "Check the SHA-256 checksum of a file", {}, filesVerify},
    {"files move", "FROM TO FILE", "moved", "{path}",
     "Move a file between two locations",
     {{"checksum", "SHA256", "Move only a file with this checksum"}, name}, filesMove},
    {"files reset", "", "reset", "true",
     "Remove all data directories and settings", {}, filesReset,
     "This removes all stored files and settings."},
    {"info", "", "info", "{serial, problem, wifi, version, bsp, ipv4, network, clock, touchscreen}",
     "Show identity, versions, network, clock and touchscreen", {}, info},
    {"link", "[IFACE]", "link", "true or false",
     "Check whether a network interface has a link", {}, link},
    {"wifi start", "", "wifi", "text",
     "Start the Wi-Fi supplicant", {}, wifiStart},
    {"wifi stop", "", "wifi", "text",
     "Stop the Wi-Fi supplicant", {}, wifiStop},
    {"wifi kill", "", "wifi", "text",
     "Kill the Wi-Fi supplicant by force", {}, wifiKill,
     "This kills every wpa_supplicant on the terminal."},
    {"wifi scan", "", "networks", "[{quality, security, essid}]",
     "List the networks in reach", {}, wifiScan},
    {"wifi status", "", "wifi", "{connected, quality}",
     "Show the quality of the Wi-Fi link", {}, wifiStatus},
    {"clock set", "TIME", "clock", "text",
     "Set system and hardware clock, as 2026-01-31T12:00:00Z", {}, clockSet,
     "This sets the clock of the terminal."},
    {"remount-ro", "MOUNTPOINT", "remounted", "text",
     "Remount a file system read-only", {}, remountReadOnly,
     "This makes a file system read-only."},
    {"country", "ID", "country", "text",
     "Print the country code of a numeric state id", {}, country},
    {"crc32", "FILE", "crc32", "text",
     "Print the CRC-32 of a file", {}, crc32},
    {"completion", "", "script", "text",
     "Print the completion script for bash", {}, completion},
    {"manual", "", "manual", "text",
     "Print the manual page", {}, manual},
};
// clang-format on

} // namespace

const std::vector<Command> &commands()
{
    return allCommands;
}

} // namespace auxctl
