#pragma once

#include <QtGlobal>

// Drops stale results: each run takes a ticket when it starts, and only the run whose ticket is
// still the newest may touch state when it ends. A newer run, or a reset that must overrule every
// run under way, raises the number; it is never lowered.
class LatestWins {
public:
    // The ticket of a new run; every earlier ticket is stale from now on.
    qint64 raise() { return ++m_current; }
    bool isCurrent(qint64 ticket) const { return ticket == m_current; }
    qint64 current() const { return m_current; }

private:
    qint64 m_current = 0;
};
