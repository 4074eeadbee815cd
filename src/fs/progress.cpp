// SPDX-License-Identifier: MIT
#include "fs/progress.h"

#include <utility>

namespace aux
{

namespace
{

thread_local ProgressObserver theObserver;

} // namespace

void observeProgress(ProgressObserver observer)
{
    theObserver = std::move(observer);
}

void advance(qint64 bytes)
{
    if (theObserver)
        theObserver(bytes);
}

} // namespace aux
