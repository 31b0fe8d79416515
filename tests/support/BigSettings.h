#pragma once

#include "core/settings/AppSettings.h"

// Settings of one version, large enough (about 200 KB) that saving them takes a while: version n is
// told by preferredWorkspaceID "version-n". The same version always gives the same file.
inline AppSettings bigSettings(qint64 version) {
    const QUuid idSpace(QStringLiteral("{6d1c3c56-4b8f-4f55-9d6e-0c3f7e1b2a90}"));
    AppSettings settings;
    settings.preferredWorkspaceID = QStringLiteral("version-%1").arg(version);
    for (int i = 0; i < 300; ++i) {
        TaskTemplate entry;
        entry.id = QUuid::createUuidV5(idSpace, QString::number(i));
        entry.name = QStringLiteral("Template %1 of version %2").arg(i).arg(version);
        entry.listID = QString::number(900'000 + i);
        entry.listPath = QStringLiteral("Engineering › Backlog › List %1").arg(i);
        entry.descriptionMarkdown = QStringLiteral("## Steps to reproduce\n\n1. Open\n2. Click\n").repeated(3);
        entry.tags = {QStringLiteral("bug"), QStringLiteral("tag-%1").arg(i % 17)};
        entry.custom = {{QStringLiteral("cf-number"), CustomValue::number(QString::number(version))},
                        {QStringLiteral("cf-labels"), CustomValue::labels({QStringLiteral("a"), QStringLiteral("b")})}};
        settings.templates.append(entry);
    }
    return settings;
}
