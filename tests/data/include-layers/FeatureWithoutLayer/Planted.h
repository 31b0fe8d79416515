#include "core/support/Overloaded.h"
#include "compose/TaskDraft.h"
