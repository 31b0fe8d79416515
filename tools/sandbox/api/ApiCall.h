#pragma once

#include "sandbox/service/ServiceRequest.h"
#include "sandbox/store/Records.h"

// One request to the REST API, with the user its token belongs to and the ids taken from its path.
struct ApiCall {
    const ServiceRequest& request;
    const User& user;
    const QStringList& params;

    QString param(qsizetype index) const { return params.value(index); }
};
