#include "support/Overloaded.h"

#include "app/AppState.h"
