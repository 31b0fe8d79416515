#pragma once

#include "core/api/NorvaneClient.h"
#include "core/submit/BulkSubmitJobPayload.h"
#include "core/submit/BulkSubmitResult.h"
#include "core/submit/ExistingTasks.h"
#include "core/submit/ForegroundSubmitPhase.h"

#include <QCoroTask>

// Creates one task per line of a bulk job, strictly one after the other, and tells which lines were
// not created. A refused line doesn't stop the run; nothing is paced or retried here. A line whose
// earlier creation's answer was lost is looked for in the list first, and not created again when an
// open task of its name is there. Made for each job, and kept alive by it while it runs.
class BulkSubmitter {
public:
    explicit BulkSubmitter(NorvaneClient client);

    // Each task takes the template's fields except the description and the custom fields, which a
    // bulk task never carries, and the line as its name. Never throws.
    QCoro::Task<BulkSubmitResult> runBulkJob(BulkSubmitJobPayload payload, PhaseHandler onPhase) const;

private:
    // The list's open tasks when lines whose creation's answer was lost are to be looked for; none
    // otherwise.
    QCoro::Task<ExistingTasks> lookUp(BulkSubmitJobPayload payload) const;

    NorvaneClient m_client;
};
