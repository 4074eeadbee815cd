// SPDX-License-Identifier: MIT
#ifndef AUXCTL_COMMANDS_H
#define AUXCTL_COMMANDS_H

#include "command.h"

/// What the rows of the table run, each in a file of its own under commands/.
namespace auxctl
{

Outcome configShow(const Invocation &invocation);
Outcome configGet(const Invocation &invocation);
Outcome configSet(const Invocation &invocation);
Outcome configChanged(const Invocation &invocation);
Outcome configValidate(const Invocation &invocation);
Outcome configSchema(const Invocation &invocation);
Outcome containerPack(const Invocation &invocation);
Outcome containerUnpack(const Invocation &invocation);
Outcome containerInfo(const Invocation &invocation);
Outcome containerVerify(const Invocation &invocation);
Outcome keyProtect(const Invocation &invocation);
Outcome keyReveal(const Invocation &invocation);
Outcome pgpImport(const Invocation &invocation);
Outcome pgpEncrypt(const Invocation &invocation);
Outcome pgpDecrypt(const Invocation &invocation);
Outcome pgpRemove(const Invocation &invocation);
Outcome filesName(const Invocation &invocation);
Outcome filesList(const Invocation &invocation);
Outcome filesCount(const Invocation &invocation);
Outcome filesFree(const Invocation &invocation);
Outcome filesChecksum(const Invocation &invocation);
Outcome filesVerify(const Invocation &invocation);
Outcome filesMove(const Invocation &invocation);
Outcome filesReset(const Invocation &invocation);
Outcome info(const Invocation &invocation);
Outcome link(const Invocation &invocation);
Outcome wifiStart(const Invocation &invocation);
Outcome wifiStop(const Invocation &invocation);
Outcome wifiKill(const Invocation &invocation);
Outcome wifiScan(const Invocation &invocation);
Outcome wifiStatus(const Invocation &invocation);
Outcome clockSet(const Invocation &invocation);
Outcome remountReadOnly(const Invocation &invocation);
Outcome country(const Invocation &invocation);
Outcome crc32(const Invocation &invocation);
Outcome completion(const Invocation &invocation);
Outcome manual(const Invocation &invocation);

} // namespace auxctl

#endif
