#pragma once

#include "core/app/ServiceAddresses.h"
#include "core/auth/AuthController.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

// The state of the onboarding page: the pasted token, the message of the last attempt, and
// whether a sign-in is under way.
class OnboardingModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(QString token READ token WRITE setToken NOTIFY tokenChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY isBusyChanged)
    Q_PROPERTY(QUrl tokenPageURL READ tokenPageURL CONSTANT)

public:
    // `addresses` tell where the service lists a person's tokens.
    OnboardingModel(AuthController& auth, ServiceAddresses addresses, QObject* parent = nullptr);

    const QString& token() const { return m_token; }
    void setToken(const QString& token);
    const QString& errorMessage() const { return m_errorMessage; }
    bool isBusy() const { return m_isBusy; }
    // Where the service lists a person's API tokens.
    QUrl tokenPageURL() const;

    // Signs in with the trimmed token; does nothing while one sign-in runs or with nothing typed.
    Q_INVOKABLE void connect();

signals:
    void tokenChanged();
    void errorMessageChanged();
    void isBusyChanged();
    // The sign-in that connect() started has ended.
    void finished();

private:
    QCoro::Task<> signIn(QString token);
    void setErrorMessage(const QString& message);
    void setBusy(bool busy);

    AuthController& m_auth;
    const ServiceAddresses m_addresses;
    QString m_token;
    QString m_errorMessage;
    bool m_isBusy = false;
};
