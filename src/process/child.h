// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_CHILD_H
#define AUX_PROCESS_CHILD_H

#include <QByteArrayList>
#include <QVector>

#include <utility>

#include <sys/resource.h>
#include <sys/types.h>

namespace aux
{

/// What a child process is to run, and with what. The descriptors may be none of the standard
/// streams, whose numbers the first three get.
struct ChildPlan {
    QByteArrayList words; // the program, found in PATH, and its arguments
    int input = -1;
    int output = -1;
    int errors = -1;
    QVector<int> inherited; // keep their numbers
    QVector<std::pair<int, rlim_t>> limits;
    bool mayLeaveOthers = false; // what it has started is not ended with it
};

/// What a child has come to.
struct ChildReport {
    int startError = 0; // an errno; 0: the program was started
    int status = 0;     // as waitpid gives it
};

/// Starts the program in a process group of its own, with an empty signal mask and its messages in
/// English. Returns the group's number, -1 with errno where that fails.
///
/// Between this process and the program stands another, the group's leader. It alone waits for the
/// program and then writes a ChildReport to the descriptor `report`: where SIGCHLD is ignored, or
/// some other thread takes the end of every child, this process could not learn of it. Then it ends
/// the group, itself included. When the calling thread dies, both are killed, though not what the
/// program has started.
pid_t startChild(const ChildPlan &plan, int report);

} // namespace aux

#endif
