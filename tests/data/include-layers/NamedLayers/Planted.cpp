#include "core/compose/TaskDraft.h"
#include "core/support/Overloaded.h"
#include <QtCore/QString>
#include <sys/types.h>
#include "Planted.moc"
#include "moc_Planted.cpp"
