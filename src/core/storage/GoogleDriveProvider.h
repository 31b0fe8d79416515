#pragma once

#include "core/storage/DriveRecords.h"
#include "core/storage/ExternalStorageProvider.h"
#include "core/storage/GoogleAddresses.h"
#include "core/storage/GoogleDriveAuthManager.h"

#include <QNetworkAccessManager>

// Stores a file in the user's Google Drive with the Drive API version 3, makes it readable by anyone
// with the link, and gives that link. Signed in through the Google sign-in, with the scope that sees
// only the files this program made.
class GoogleDriveProvider : public ExternalStorageProvider {
public:
    // An empty folder id means the root of the user's Drive. The sign-in and the session must outlive
    // every upload.
    GoogleDriveProvider(QString folderID, GoogleDriveAuthManager& auth, QNetworkAccessManager* session,
                        GoogleAddresses addresses);

    QString displayName() const override;
    // Fails when the sign-in last knew of no stored token; the folder is not looked at.
    void validateConfiguration() const override;
    // Checks that a token is stored, gets a valid one, sends the file with its name and folder in one
    // request, shares it with anyone who has the link and gives its web link. When sharing fails the
    // file stays in Drive, private.
    QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const override;

    // The JSON that names the file: its name, and its folder unless the folder id is empty.
    static QByteArray metadata(const QString& filename, const QString& folderID);

private:
    QCoro::Task<DriveFileResponse> uploadFile(QByteArray data, QString filename, QString accessToken) const;
    QCoro::Task<> makePubliclyViewable(QString fileID, QString accessToken) const;

    const QString m_folderID;
    GoogleDriveAuthManager& m_auth;
    QNetworkAccessManager* const m_session;
    const GoogleAddresses m_addresses;
};
