// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_SUPPLICANTREQUEST_H
#define AUX_SYSTEM_SUPPLICANTREQUEST_H

#include <QByteArray>

#include <optional>

struct wpa_ctrl;

namespace aux
{

/// Sends the Wi-Fi daemon a command and returns its answer, of which only the first 4095 bytes
/// count; nothing where the answer does not come within ten seconds, whatever else arrives.
///
/// The daemon answers in the order of the commands. Events, and answers that an earlier command did
/// not wait for, are skipped.
std::optional<QByteArray> requestSupplicant(wpa_ctrl *ctrl, const char *command);

/// Forgets which answers are outstanding on a connection that is new or about to be closed.
void forgetSupplicantRequests(wpa_ctrl *ctrl);

} // namespace aux

#endif
