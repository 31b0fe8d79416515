#pragma once

#include "core/platform/LinkActions.h"

#include <QList>
#include <QStringList>
#include <QUrl>

// Link actions that only record what they were asked to do.
class RecordingLinkActions : public LinkActions {
public:
    void openURL(const QUrl& url) override { m_opened.append(url); }
    void copyText(const QString& text) override { m_copied.append(text); }

    const QList<QUrl>& opened() const { return m_opened; }
    const QStringList& copied() const { return m_copied; }

private:
    QList<QUrl> m_opened;
    QStringList m_copied;
};
