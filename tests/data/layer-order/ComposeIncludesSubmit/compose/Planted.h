#include "core/compose/StagedAttachment.h"
#include "core/hierarchy/ListEntry.h"
#include "core/submit/SubmitJobPayload.h"
