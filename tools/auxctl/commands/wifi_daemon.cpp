// SPDX-License-Identifier: MIT
#include "command.h"

#include <aux/systemhelper.h>

namespace auxctl
{

namespace
{

using aux::SystemHelper;

Result start(const Call &)
{
    check(SystemHelper::wpaSupplicantStart());
    return plainText("started");
}

Result stop(const Call &)
{
    check(SystemHelper::wpaSupplicantStop());
    return plainText("stopped");
}

Result kill(const Call &)
{
    check(SystemHelper::wpaSupplicantForceKill());
    return plainText("killed");
}

const Registration startRow{
    {"wifi start", "", "supplicant", "text", "Start the Wi-Fi supplicant", {}, start}};
const Registration stopRow{
    {"wifi stop", "", "supplicant", "text", "Stop the Wi-Fi supplicant", {}, stop}};
const Registration killRow{{"wifi kill",
                            "",
                            "supplicant",
                            "text",
                            "Kill the Wi-Fi supplicant by force",
                            {},
                            kill,
                            "This kills every wpa_supplicant on the terminal."}};

} // namespace

} // namespace auxctl
