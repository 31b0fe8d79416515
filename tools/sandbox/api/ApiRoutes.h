#pragma once

#include "sandbox/api/ApiCall.h"
#include "sandbox/service/RouteTable.h"
#include "sandbox/service/SandboxConfig.h"
#include "sandbox/store/SandboxStore.h"

using ApiRoutes = RouteTable<ApiCall>;

// What the REST routes share: the data, the settings tests change, and where things live.
struct ApiEnvironment {
    SandboxStore& store;
    SandboxConfig& config;
    QString webBase;
    QString dataFolder;
};

// One function per resource adds its routes, paths relative to /api/v2.
void addUserRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
void addTeamRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
void addSpaceRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
void addListRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
void addTaskRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
void addAttachmentRoutes(ApiRoutes& routes, const ApiEnvironment& environment);
