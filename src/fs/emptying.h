// SPDX-License-Identifier: MIT
#ifndef AUX_FS_EMPTYING_H
#define AUX_FS_EMPTYING_H

#include "fs/directory.h"

#include <QByteArray>
#include <QString>

#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace aux
{

/// Removes everything in a directory: names in any bytes, any depth, links without following them.
/// Goes on where something cannot be removed. Has two directories open at the most.
class Emptying
{
public:
    explicit Emptying(Directory directory);

    /// Returns whether nothing is left.
    bool run();
    /// What could not be removed first, relative to the directory, and the errno of that.
    const QString &obstacle() const { return m_obstacle; }
    int error() const { return m_error; }

private:
    struct Level {
        std::string name;
        dev_t device;
        ino_t inode;
        std::set<std::string> kept;
    };

    std::string removeUpToDirectory();
    void descend(const std::string &name);
    bool ascend();
    void enter(Directory directory, const std::string &name);
    bool isInside(const Level &level) const;
    void keep(const std::string &name);

    Directory m_current;
    std::vector<Level> m_levels; // from the directory to the current one
    QString m_obstacle;
    int m_error = 0;
};

} // namespace aux

#endif
