#pragma once

#include "core/api/NVError.h"

#include <QByteArray>

// The error of an answer outside 200 to 299 other than a rate limit: a 401 carries the service's
// message or the default text, the storage-limit code is told apart, and anything else is a server
// error with the service's code and message, or "Norvane error (HTTP <status>)".
NVError statusFailure(int status, const QByteArray& body);
