#include "core/shell/StatusItemBadgeModel.h"
#include "core/support/Overloaded.h"
