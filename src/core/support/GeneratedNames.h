#pragma once

#include <QString>
#include <QUuid>

// The names the program makes up for its own files and multipart boundaries.

// `name` in the system's temporary directory, looked up on every call so that a changed TMPDIR
// counts at once.
QString temporaryPath(const QString& name);

// A UUID as these names spell it: upper case, without braces. A new one unless one is given.
QString upperCaseUuid(const QUuid& uuid = QUuid::createUuid());
