#include "core/storage/ExternalStorageProvider.h"
#include "core/compose/StagedAttachment.h"
