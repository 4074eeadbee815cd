// SPDX-License-Identifier: MIT
// Judges whatever text it is given as a configuration file. A file without any fault is one that is
// accepted; one that is not accepted has a fault, and each is said in one entry.
#include <aux/configuration.h>

#include "require.h"

#include <QFile>
#include <QTemporaryFile>

#include <sanitizer/lsan_interface.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    using aux::Configuration;
    QTemporaryFile file;
    require(file.open() &&
            file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size)) ==
                static_cast<qint64>(size) &&
            file.flush());
    const __lsan::ScopedDisabler lost; // by Qt, an object whose name comes twice
    const aux::Error verdict = Configuration::validateConfigFile(file.fileName());
    const aux::Error faults = Configuration::findConfigFileFaults(file.fileName());
    require(faults.hasError() || !verdict.hasError());
    for (const aux::ErrorData &fault : faults)
        require(fault.getId() == 10002 && !fault.getMsg().isEmpty());
    return 0;
}
