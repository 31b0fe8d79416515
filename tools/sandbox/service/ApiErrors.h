#pragma once

#include "sandbox/service/ServiceResponse.h"

// The error answers of the service: a JSON object with the message in `err` and a code in `ECODE`.
namespace ApiErrors {

inline constexpr auto storageLimitCode = "GBUSED_005";

ServiceResponse error(int status, const QString& message, const QString& code);
ServiceResponse missingToken();
ServiceResponse invalidToken();
ServiceResponse routeNotFound();
// `what` names the kind of record, as in "List".
ServiceResponse notFound(const QString& what);
ServiceResponse invalidJson(const QString& detail);
ServiceResponse invalidField(const QString& message);
ServiceResponse invalidQuery(const QString& message);
ServiceResponse bodyTooLarge();
ServiceResponse storageLimitReached();

} // namespace ApiErrors
