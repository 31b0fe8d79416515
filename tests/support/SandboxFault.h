#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

// A fault rule for norvane-sandbox's POST /_sandbox/faults, built in C++. Unset fields are left out,
// so the sandbox's defaults apply: any method, once.
struct SandboxFault {
    QString method;
    QString path;
    std::optional<int> times;
    std::optional<int> status;
    QMap<QString, QString> headers;
    std::optional<QString> err;
    std::optional<QString> ecode;
    std::optional<QString> bodyText;
    // Any JSON as the body, in place of the service's error object.
    std::optional<QJsonValue> body;
    std::optional<QString> contentType;
    std::optional<int> delayMs;
    bool drop = false;
    bool dropAfter = false;
    bool answerAfter = false;
    bool held = false;

    static SandboxFault answer(const QString& path, int status, int times = 1);
    static SandboxFault delay(const QString& path, int delayMs);
    // Once, the request waits until SandboxProcess::releaseHeld() (or the rules are cleared), then
    // goes on.
    static SandboxFault hold(const QString& path);
    // Qt's network access sends a request once more on a new connection when its connection closes
    // before any answer, so a drop that a QNetworkAccessManager client is to see happens twice.
    static SandboxFault dropConnection(const QString& path, int times = 2);
    // The request is handled, a task created or a file stored, and then its answer is lost: the
    // connection drops in its place. The same resend applies as above.
    static SandboxFault dropAnswer(const QString& path, int times = 2);
    // The request is handled, a task created or a file stored, and then answered 200 with a body
    // that is no JSON in place of its own answer.
    static SandboxFault garbleAnswer(const QString& path);
    // Once, the creation of a task in any list, and no other request: a list's tasks are read from
    // the same path.
    static SandboxFault taskCreationAnswer(int status);
    static SandboxFault taskCreationDelay(int delayMs);

    // The same rule for requests of `method` only.
    SandboxFault forMethod(const QString& method) const {
        SandboxFault fault = *this;
        fault.method = method;
        return fault;
    }

    QJsonObject toJson() const;
};
