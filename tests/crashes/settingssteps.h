// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_SETTINGSSTEPS_H
#define AUX_TESTS_SETTINGSSTEPS_H

#include <aux/configuration.h>

#include "crashes/marks.h"
#include "crashes/numbered.h"

#include <cstdlib>
#include <iostream>

#include <sys/wait.h>
#include <unistd.h>

// What a terminal at work does to its settings, and what it may find then.

inline void require(const aux::Error &error)
{
    if (!error.hasError())
        return;
    std::cerr << error << std::endl;
    std::exit(EXIT_FAILURE);
}

inline aux::Configuration &configuration()
{
    static aux::Configuration theConfiguration;
    static const bool isInitialized = (theConfiguration.init(), true);
    Q_UNUSED(isInitialized)
    return theConfiguration;
}

inline void set(int number)
{
    began("settings");
    configuration().setValue(numbered, settingOf(number));
    confirmed("settings", QStringLiteral("%1 ").arg(number));
}

inline void commit()
{
    began("commits");
    configuration().commit();
    confirmed("commits", QString::number(configuration().getChangeCounter()));
}

inline void setBoth(int number)
{
    const QString infotext = QString::number(number) + ' ';
    began("settings", {infotext});
    configuration().setValue(numbered, settingOf(number));
    configuration().setValue(aux::SettingsCode::DeviceLang, "xx");
    confirmed("settings", infotext + "xx");
}

/// Two settings come back together.
inline void rollback(int number)
{
    configuration().snapshot();
    setBoth(number + 1);
    began("settings");
    configuration().rollback(aux::SettingsArea::All);
    confirmed("settings", QStringLiteral("%1 ").arg(number));
}

inline void makeCandidate()
{
    set(1);
    configuration().snapshot();
    setBoth(2);
    require(configuration().writeConfigFile("/tmp/candidate"));
    began("settings");
    configuration().rollback(aux::SettingsArea::All);
    confirmed("settings", "1 ");
}

inline void apply()
{
    began("settings");
    began("commits");
    require(configuration().applyConfigFile("/tmp/candidate"));
    confirmed("settings", "2 xx");
    confirmed("commits", QString::number(configuration().getChangeCounter()));
}

/// Each of two processes changes a setting of its own.
inline void takeTurns()
{
    const pid_t other = ::fork();
    for (int number = 1; number <= 5; ++number) {
        const QString fact = other == 0 ? "lang" : "infotext";
        began(fact);
        if (other == 0)
            configuration().setValue(aux::SettingsCode::DeviceLang, QString::number(number));
        else
            configuration().setValue(numbered, settingOf(number));
        confirmed(fact, QString::number(number));
    }
    if (other == 0)
        ::_exit(EXIT_SUCCESS);
    ::waitpid(other, nullptr, 0);
}

#endif
