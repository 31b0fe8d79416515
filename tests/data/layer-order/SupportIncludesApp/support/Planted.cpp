#include "core/support/Overloaded.h"

#include "core/app/AppState.h"
