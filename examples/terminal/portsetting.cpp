// SPDX-License-Identifier: MIT
#include "portsetting.h"

bool changePort(aux::Configuration &configuration, unsigned int port,
                const std::function<bool()> &userAgrees)
{
    configuration.snapshot(); // what rollback() writes
    // Of exactly the setting's type: an int would be refused.
    configuration.setValue(aux::SettingsCode::NetworkDataport, port);
    if (configuration.changed(aux::SettingsArea::Network).anyChanged && !userAgrees()) {
        configuration.rollback(aux::SettingsArea::Network);
        return false;
    }
    configuration.commit();
    return true;
}
