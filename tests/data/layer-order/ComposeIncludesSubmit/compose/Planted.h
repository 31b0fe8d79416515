#include "compose/StagedAttachment.h"
#include "hierarchy/ListEntry.h"
#include "submit/SubmitJobPayload.h"
