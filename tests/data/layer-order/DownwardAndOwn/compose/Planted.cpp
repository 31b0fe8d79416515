#include "compose/TaskDraft.h"

#include "hierarchy/LocationMemory.h"
#include "settings/SettingsStore.h"
#include "support/Overloaded.h"
#include <QtCore/QString>
#include <compose/TagEntry.h>
#include "moc_Planted.cpp"
