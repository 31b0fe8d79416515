#pragma once

#include <QtGlobal>

// Guards against stale validations: each validation carries the number it was given, and only the
// one whose number still equals `current` may touch state. Raised, never lowered.
struct AuthValidationGeneration {
    qint64 current = 0;

    qint64 raise() { return ++current; }
    bool isCurrent(qint64 generation) const { return generation == current; }
};
