// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_OPENPGP_H
#define AUX_TESTS_OPENPGP_H

#include <aux/datahelper.h>

#include "support/observe.h"
#include "support/othermachine.h"

#include <QtTest>

using aux::DataHelper;
using othermachine::KeyPair;

inline const QString keyring = QStringLiteral("/tmp/gpg-temp-keyring");
inline const QString dir = QStringLiteral("/data/box");

/// What still runs on the keyring.
inline QStringList keyringProcesses()
{
    QStringList found;
    for (const QString &process : QDir("/proc").entryList({"[0-9]*"})) {
        if (read("/proc/" + process + "/cmdline").contains(keyring.toUtf8()))
            found += process;
    }
    return found;
}

inline QString importKey(const QByteArray &content)
{
    write(dir + "/key", content);
    const QString result = text(DataHelper::importKeypairGPG(dir + "/key"));
    QFile::remove(dir + "/key");
    return result;
}

inline QString importKey(const KeyPair &key)
{
    return importKey(othermachine::exported(key));
}

inline QString encrypt(const QString &in = "in", const QString &out = "out")
{
    return text(DataHelper::encryptFileGPG(in, out));
}

inline QString decrypt(const QString &passPhrase, const QString &in = "in",
                       const QString &out = "out")
{
    return text(DataHelper::decryptFileGPG(in, out, passPhrase));
}

inline QString failure(const char *operation, const QString &reason)
{
    return QString("libaux %1: %2 10001").arg(operation, reason);
}

inline QByteArray incompressible(int size)
{
    QByteArray content;
    for (quint32 number = 1; content.size() < size; number = number * 1664525 + 1013904223)
        content += static_cast<char>(number >> 24);
    return content;
}

/// An empty current directory but for "out", which says "old".
inline void prepareWork()
{
    clear(dir);
    clearTmp();
    QDir::setCurrent(dir);
    write("out", "old");
}

/// Whatever happened: nothing runs, and nothing lies about.
inline void checkNothingIsLeft()
{
    QCOMPARE(keyringProcesses(), QStringList());
    QCOMPARE(text(DataHelper::removeKeypairGPG()), QString());
    QCOMPARE(filesInTmp(), QStringList());
    for (const QString &file : filesIn(dir))
        QVERIFY2(!file.startsWith('.'), qPrintable(file));
}

#endif
