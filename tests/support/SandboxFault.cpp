#include "support/SandboxFault.h"

SandboxFault SandboxFault::answer(const QString& path, int status, int times) {
    SandboxFault fault;
    fault.path = path;
    fault.status = status;
    fault.times = times;
    return fault;
}

SandboxFault SandboxFault::delay(const QString& path, int delayMs) {
    SandboxFault fault;
    fault.path = path;
    fault.delayMs = delayMs;
    return fault;
}

SandboxFault SandboxFault::hold(const QString& path) {
    SandboxFault fault;
    fault.path = path;
    fault.held = true;
    return fault;
}

SandboxFault SandboxFault::dropConnection(const QString& path, int times) {
    SandboxFault fault;
    fault.path = path;
    fault.drop = true;
    fault.times = times;
    return fault;
}

SandboxFault SandboxFault::dropAnswer(const QString& path, int times) {
    SandboxFault fault = dropConnection(path, times);
    fault.drop = false;
    fault.dropAfter = true;
    return fault;
}

SandboxFault SandboxFault::garbleAnswer(const QString& path) {
    SandboxFault fault = answer(path, 200);
    fault.bodyText = QStringLiteral("<html>Gateway says hello</html>");
    fault.answerAfter = true;
    return fault;
}

namespace {
SandboxFault onTaskCreation(SandboxFault fault) {
    fault.method = QStringLiteral("POST");
    return fault;
}
const QString taskCreationPath = QStringLiteral("/api/v2/list/*/task");
} // namespace

SandboxFault SandboxFault::taskCreationAnswer(int status) {
    return onTaskCreation(answer(taskCreationPath, status));
}

SandboxFault SandboxFault::taskCreationDelay(int delayMs) {
    return onTaskCreation(delay(taskCreationPath, delayMs));
}

QJsonObject SandboxFault::toJson() const {
    QJsonObject rule{{QStringLiteral("path"), path}};
    if (!method.isEmpty()) {
        rule.insert(QStringLiteral("method"), method);
    }
    if (times) {
        rule.insert(QStringLiteral("times"), *times);
    }
    if (status) {
        rule.insert(QStringLiteral("status"), *status);
    }
    if (!headers.isEmpty()) {
        QJsonObject headerObject;
        for (auto it = headers.begin(); it != headers.end(); ++it) {
            headerObject.insert(it.key(), it.value());
        }
        rule.insert(QStringLiteral("headers"), headerObject);
    }
    if (err) {
        rule.insert(QStringLiteral("err"), *err);
    }
    if (ecode) {
        rule.insert(QStringLiteral("ecode"), *ecode);
    }
    if (bodyText) {
        rule.insert(QStringLiteral("bodyText"), *bodyText);
    }
    if (body) {
        rule.insert(QStringLiteral("body"), *body);
    }
    if (contentType) {
        rule.insert(QStringLiteral("contentType"), *contentType);
    }
    if (delayMs) {
        rule.insert(QStringLiteral("delayMs"), *delayMs);
    }
    if (drop) {
        rule.insert(QStringLiteral("drop"), true);
    }
    if (dropAfter) {
        rule.insert(QStringLiteral("dropAfter"), true);
    }
    if (answerAfter) {
        rule.insert(QStringLiteral("answerAfter"), true);
    }
    if (held) {
        rule.insert(QStringLiteral("hold"), true);
    }
    return rule;
}
