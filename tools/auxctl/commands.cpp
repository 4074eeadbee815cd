// SPDX-License-Identifier: MIT
#include "commands.h"

namespace auxctl
{

const Option yesOption{"yes", nullptr, "Do not ask"};

const std::vector<Option> &commonOptions()
{
    static const std::vector<Option> options{
        {"json", nullptr, "Print one JSON document"},
        {"debug", nullptr, "Print the library's diagnostic lines to standard error"},
        {"help", nullptr, "Print help"},
        {"version", nullptr, "Print the version"},
    };
    return options;
}

namespace
{

// clang-format off
const Option app{"app", "ORG/NAME", "The application whose settings are meant"};
const Option name{"name", "NAME", "Use this file name"};
const std::vector<Command> allCommands{
    {"config show", "[KEY...]", "settings", "Show settings; a * marks what differs from the default",
     {app, {"reveal", nullptr, "Show secrets too"}}, configShow},
    {"config get", "KEY", "value", "Print the value of a setting", {app}, configGet},
    {"config set", "KEY=VALUE...", "set", "Set all of these settings, or none", {app}, configSet},
    {"config changed", "[AREA]", "changed", "Show settings that differ from their defaults", {app}, configChanged},
    {"config validate", "FILE", "valid", "Check a configuration file before it is taken into use", {}, configValidate},
    {"config schema", "", "schema", "Print a JSON Schema for configuration files", {}, configSchema},
    {"container pack", "FILE CONTAINER", "container", "Pack a file into a container",
     {{"type", "TYPE", "What it holds: DDDF (default), LOGF, CFGF, GPGF, UPDF"}, name}, containerPack},
    {"container unpack", "CONTAINER [DIRECTORY]", "unpacked", "Unpack a container and check its digest",
     {name, {"force", nullptr, "Overwrite an existing file"}}, containerUnpack},
    {"container info", "CONTAINER", "container", "Show what the header of a container says", {}, containerInfo},
    {"container verify", "CONTAINER", "container", "Check the digest of a container, writing nothing", {}, containerVerify},
    {"files name", "LOCATION", "path", "Make up a unique file name", {}, filesName},
    {"files list", "LOCATION", "files", "List the readable files of a location", {}, filesList},
    {"files count", "LOCATION", "count", "Count the readable files of a location", {}, filesCount},
    {"files free", "LOCATION BYTES", "free", "Check for free space; BYTES may end in K, M or G", {}, filesFree},
    {"files checksum", "FILE", "checksum", "Print the SHA-256 checksum of a file", {}, filesChecksum},
    {"files verify", "FILE CHECKSUM", "valid", "Check the SHA-256 checksum of a file", {}, filesVerify},
    {"files move", "FROM TO FILE", "moved", "Move a file between two locations",
     {{"checksum", "SHA256", "Move only a file with this checksum"}, name}, filesMove},
    {"files reset", "", "reset", "Remove all data directories and settings", {}, filesReset,
     "This removes all stored files and settings."},
    {"info", "", "info", "Show identity, versions, network, clock and touchscreen", {}, info},
    {"link", "[IFACE]", "link", "Check whether a network interface has a link", {}, link},
    {"wifi start", "", "wifi", "Start the Wi-Fi supplicant", {}, wifiStart},
    {"wifi stop", "", "wifi", "Stop the Wi-Fi supplicant", {}, wifiStop},
    {"wifi kill", "", "wifi", "Kill the Wi-Fi supplicant by force", {}, wifiKill,
     "This kills every wpa_supplicant on the terminal."},
    {"wifi scan", "", "networks", "List the networks in reach", {}, wifiScan},
    {"wifi status", "", "wifi", "Show the quality of the Wi-Fi link", {}, wifiStatus},
    {"clock set", "TIME", "clock", "Set system and hardware clock, as 2026-01-31T12:00:00Z", {}, clockSet,
     "This sets the clock of the terminal."},
    {"remount-ro", "MOUNTPOINT", "remounted", "Remount a file system read-only", {}, remountReadOnly,
     "This makes a file system read-only."},
    {"country", "ID", "country", "Print the country code of a numeric state id", {}, country},
    {"crc32", "FILE", "crc32", "Print the CRC-32 of a file", {}, crc32},
    {"completion", "", "script", "Print the completion script for bash", {}, completion},
    {"manual", "", "manual", "Print the manual page", {}, manual},
};
// clang-format on

} // namespace

const std::vector<Command> &commands()
{
    return allCommands;
}

} // namespace auxctl
