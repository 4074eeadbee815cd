// SPDX-License-Identifier: MIT
// Reading and writing settings against a bare QSettings on the same file. Needs a /data of its own,
// for the price of writing one on a disk:
// kit/sandbox --empty bash -c 'mount --bind DIRECTORY /data && build/release/bench/bench_config'
#include <aux/configuration.h>

#include "config/catalogue.h"
#include "ratios.h"

#include <QCoreApplication>
#include <QSettings>

using aux::SettingsCode;

namespace
{

const QString key = QStringLiteral("device/lang");

aux::Configuration &configuration()
{
    static aux::Configuration instance;
    return instance;
}

/// A text that differs each time, of one length.
QString nextText()
{
    static int count = 0;
    return QString::number(1000000 + ++count);
}

void bareRead(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(QSettings().value(key, QString()));
}

void getValue(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(configuration().getValue(SettingsCode::DeviceLang));
}

void bareWrite(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        QSettings settings;
        settings.setValue(key, nextText());
        settings.sync();
    }
}

void setValue(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        configuration().setValue(SettingsCode::DeviceLang, nextText());
}

void allSingly(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        for (const aux::Setting &setting : aux::settingsCatalogue())
            benchmark::DoNotOptimize(configuration().getValue(setting.code));
    }
}

void changedAll(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(configuration().changed(aux::SettingsArea::All));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setOrganizationName(QStringLiteral("bench"));
    QCoreApplication::setApplicationName(QStringLiteral("config"));
    configuration().init();
    configuration().rollback(aux::SettingsArea::All); // a file with all settings
    const auto add = [](const char *name, void (*function)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond)->UseRealTime();
    };
    add("bareRead", bareRead);
    add("getValue", getValue);
    add("allSingly", allSingly);
    add("changedAll", changedAll);
    add("bareWrite", bareWrite);
    add("setValue", setValue);
    // A write is allowed the flush of the directory, which the bare one does without.
    return bench::run(argc, argv,
                      {{"getValue to bare read", "getValue", {"bareRead"}, 1.1, false},
                       {"changed(All) to 42 reads", "changedAll", {"allSingly"}, 0.2, false},
                       {"setValue to bare write", "setValue", {"bareWrite"}, 1.5, false}});
}
