#pragma once

#include "core/async/LatestWins.h"

// Guards against stale validations: each validation carries the number it was given, and only the
// one whose number still equals the current one may touch state. Sign-in, an account switch and
// sign-out raise it; it is never lowered.
class AuthValidationGeneration : public LatestWins {};
