#pragma once

#include "sandbox/admin/FaultRules.h"
#include "sandbox/admin/RequestLog.h"
#include "sandbox/service/RouteTable.h"
#include "sandbox/service/SandboxConfig.h"

using AdminRoutes = RouteTable<RouteCall>;

// The test endpoints under /_sandbox, offered only with --admin:
//   GET, POST, DELETE faults   the fault rules (see FaultRules)
//   POST faults/release        lets the requests that rules hold go on
//   GET requests?since=N       the request log after entry N (see RequestLog); DELETE clears it
//   POST reset                 the seed's data again, no rules, an empty log, the first settings
//   GET, POST config           the settings tests change (see SandboxConfig)
struct AdminEnvironment {
    FaultRules& faults;
    RequestLog& log;
    SandboxConfig& config;
    std::function<void()> resetData;
};

void addAdminRoutes(AdminRoutes& routes, const AdminEnvironment& environment);
