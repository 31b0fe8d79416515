#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <cstdio>
#include <exception>

// Runs a benchmark client's task in the application's event loop and gives the process's exit
// status: the task's own, or 1 when it threw, after saying why on standard error.
inline int runToExit(QCoreApplication& application, QCoro::Task<int> task) {
    int status = 1;
    task.then(
        [&](int result) {
            status = result;
            application.quit();
        },
        [&](const std::exception& error) {
            std::fprintf(stderr, "upload failed: %s\n", error.what());
            application.quit();
        });
    application.exec();
    return status;
}
