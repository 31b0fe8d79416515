#include "core/compose/TaskDraft.h"
#include "desktop/compose/ComposerViewModel.h"
