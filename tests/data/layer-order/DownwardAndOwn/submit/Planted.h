#include "storage/ExternalStorageProvider.h"
#include "compose/StagedAttachment.h"
