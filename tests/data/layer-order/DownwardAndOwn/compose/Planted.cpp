#include "core/compose/TaskDraft.h"

#include "core/hierarchy/LocationMemory.h"
#include "core/settings/SettingsStore.h"
#include "core/support/Overloaded.h"
#include <QtCore/QString>
#include <core/compose/TagEntry.h>
#include "moc_Planted.cpp"
