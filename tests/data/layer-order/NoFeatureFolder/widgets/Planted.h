#include "core/support/Overloaded.h"
