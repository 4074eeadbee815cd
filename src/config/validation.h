// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_VALIDATION_H
#define AUX_CONFIG_VALIDATION_H

#include "aux/error.h"
#include "config/candidate.h"

namespace aux
{

/// One thing that is wrong with a candidate.
struct Fault {
    const Setting *setting; // null: the file as a whole
    Error error;
};

/// Finds everything that is wrong, wrong types included, in the order of the catalogue.
QVector<Fault> findFaults(const Candidate &candidate);

/// The faults as one chain; iterating it gives them in their order.
Error chained(const QVector<Fault> &faults);

/// Reads a candidate and fails with everything that is wrong with it, or where there is none.
Error readFaultless(const QString &fileName, Candidate &candidate);

} // namespace aux

#endif
