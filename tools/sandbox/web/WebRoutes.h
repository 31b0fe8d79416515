#pragma once

#include "sandbox/service/RouteTable.h"
#include "sandbox/store/SandboxStore.h"

using WebRoutes = RouteTable<RouteCall>;

// The pages that links of the demo lead to: an index, the token page, a task and a list.
void addWebPages(WebRoutes& routes, const SandboxStore& store, const QString& webBase);
// The files behind attachment URLs.
void addAttachmentDownloads(WebRoutes& routes, const SandboxStore& store);
