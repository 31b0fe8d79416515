#include "support/Overloaded.h"
