#include "platform/linux/TimerFdAlarm.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace {
// Long enough for the kernel's timer under the load of a shared machine.
constexpr int answerMs = 5000;
} // namespace

// The wall-clock alarm on a timerfd of the real-time clock: it fires at an absolute time, and
// tells when the clock is set.
class TimerFdAlarmTest : public QObject {
    Q_OBJECT

private slots:
    void itFiresAtTheInstantOnTheWallClockAndNotBefore() {
        TimerFdAlarm alarm;
        const QDateTime instant = QDateTime::currentDateTimeUtc().addMSecs(300);
        QDateTime firedAt;
        connect(&alarm, &WallClockAlarm::fired, this, [&firedAt] { firedAt = QDateTime::currentDateTimeUtc(); });
        alarm.arm(instant);
        QTRY_VERIFY_WITH_TIMEOUT(firedAt.isValid(), answerMs);
        QVERIFY2(firedAt >= instant, qPrintable(firedAt.toString(Qt::ISODateWithMs)));
    }

    void anInstantThatHasPassedFiresAtOnce() {
        TimerFdAlarm alarm;
        QSignalSpy fired(&alarm, &WallClockAlarm::fired);
        alarm.arm(QDateTime::currentDateTimeUtc().addSecs(-3600));
        QVERIFY(fired.wait(answerMs));
        alarm.arm(QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
        QVERIFY(fired.wait(answerMs));
    }

    void armingAgainReplacesTheInstantAndDisarmingStopsIt() {
        TimerFdAlarm replaced;
        TimerFdAlarm disarmed;
        TimerFdAlarm marker;
        QSignalSpy replacedFired(&replaced, &WallClockAlarm::fired);
        QSignalSpy disarmedFired(&disarmed, &WallClockAlarm::fired);
        QSignalSpy markerFired(&marker, &WallClockAlarm::fired);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        replaced.arm(now.addSecs(3600));
        replaced.arm(now.addMSecs(100));
        disarmed.arm(now.addMSecs(100));
        disarmed.disarm();
        marker.arm(now.addMSecs(300));
        QVERIFY(markerFired.wait(answerMs));
        QTRY_COMPARE_WITH_TIMEOUT(replacedFired.size(), 1, answerMs);
        QCOMPARE(disarmedFired.size(), 0);
    }

    void settingTheClockIsToldAsAJumpAndTheAlarmStaysArmed() {
        TimerFdAlarm alarm;
        QStringList heard;
        connect(&alarm, &WallClockAlarm::clockJumped, this, [&heard] { heard.append(QStringLiteral("jumped")); });
        connect(&alarm, &WallClockAlarm::fired, this, [&heard] { heard.append(QStringLiteral("fired")); });
        // Far enough ahead that the clock is set well before.
        alarm.arm(QDateTime::currentDateTimeUtc().addSecs(3));
        // The clock set to what it reads: a change of nothing, but a change all the same.
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        if (clock_settime(CLOCK_REALTIME, &now) != 0) {
            const int error = errno;
            if (error == EPERM) {
                QSKIP("Setting the real-time clock needs CAP_SYS_TIME, which this process lacks (EPERM).");
            }
            QFAIL(std::strerror(error));
        }
        QTRY_COMPARE_WITH_TIMEOUT(heard, (QStringList{"jumped", "fired"}), 3000 + answerMs);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TimerFdAlarmTest)
#include "TimerFdAlarmTest.moc"
