#include "support/TestMain.h"

#include "core/async/StartTask.h"

namespace {
void failTheTest(const QString& description) {
    qFatal("A started task let an exception escape: %s", qUtf8Printable(description));
}
} // namespace

void TestMain::failOnEscapedExceptions() {
    setEscapedExceptionHandler(&failTheTest);
}
