#include "shell/StatusItemBadgeModel.h"
#include "support/Overloaded.h"
