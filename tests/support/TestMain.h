#pragma once

#include <QTest>

// The main of every test. Before the test class runs, it makes a started task whose exception
// escapes end the test with a failure; then it runs the class as QTest's own main would:
//   NORVANEBAR_TEST_MAIN(Class)          as QTEST_MAIN: the application of the Qt modules linked
//   NORVANEBAR_TEST_GUILESS_MAIN(Class)  as QTEST_GUILESS_MAIN: a QCoreApplication
//   NORVANEBAR_TEST_APPLESS_MAIN(Class)  as QTEST_APPLESS_MAIN: no application object
namespace TestMain {
// From now on a started task's escaped exception ends the test, loudly, as failed.
void failOnEscapedExceptions();
} // namespace TestMain

#define NORVANEBAR_TEST_MAIN(TestObject)                                                                               \
    QTEST_MAIN_WRAPPER(TestObject, TestMain::failOnEscapedExceptions(); QTEST_MAIN_SETUP())
#define NORVANEBAR_TEST_GUILESS_MAIN(TestObject)                                                                       \
    QTEST_MAIN_WRAPPER(TestObject, TestMain::failOnEscapedExceptions(); QTEST_QAPP_SETUP(QCoreApplication))
#define NORVANEBAR_TEST_APPLESS_MAIN(TestObject) QTEST_MAIN_WRAPPER(TestObject, TestMain::failOnEscapedExceptions();)
