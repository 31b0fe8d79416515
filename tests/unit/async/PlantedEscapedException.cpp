// Planted for the test kit's main: a test whose started task lets an exception escape. Built with
// the kit's main it must end as failed, with the escape named; the test EscapedExceptionFailsTheTest
// runs it and checks that it does.
#include "core/async/StartTask.h"
#include "support/TestMain.h"

#include <QCoroTask>
#include <stdexcept>

namespace {
QCoro::Task<> failNow() {
    throw std::runtime_error("broken on purpose");
    co_return;
}
} // namespace

class PlantedEscapedException : public QObject {
    Q_OBJECT

private slots:
    // The task fails before its first wait, so the escape is reported inside startTask itself.
    void aStartedTaskLetsAnExceptionEscape() {
        QObject context;
        startTask(&context, failNow());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PlantedEscapedException)
#include "PlantedEscapedException.moc"
