#include "desktop/auth/OnboardingModel.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"

OnboardingModel::OnboardingModel(AuthController& auth, ServiceAddresses addresses, QObject* parent)
    : QObject(parent)
    , m_auth(auth)
    , m_addresses(std::move(addresses)) {}

void OnboardingModel::setToken(const QString& token) {
    if (m_token != token) {
        m_token = token;
        emit tokenChanged();
    }
}

QUrl OnboardingModel::tokenPageURL() const {
    QUrl url = m_addresses.webBaseURL;
    url.setPath(url.path() + QStringLiteral("/settings/apps"));
    return url;
}

void OnboardingModel::connect() {
    const QString trimmed = m_token.trimmed();
    if (trimmed.isEmpty() || m_isBusy) {
        return;
    }
    setBusy(true);
    setErrorMessage({});
    startTask(this, signIn(trimmed));
}

QCoro::Task<> OnboardingModel::signIn(QString token) {
    QCoro::Task<std::optional<std::optional<QString>>> signingIn =
        awaitGuarded(LoadGuard(this), m_auth.signIn(std::move(token)));
    const std::optional<std::optional<QString>> answer = co_await std::move(signingIn);
    if (!answer) {
        co_return;
    }
    const std::optional<QString>& message = *answer;
    setErrorMessage(message.value_or(QString()));
    if (!message) {
        setToken({}); // signed in: the token now lives in the secret store only
    }
    setBusy(false);
    emit finished();
}

void OnboardingModel::setErrorMessage(const QString& message) {
    if (m_errorMessage != message) {
        m_errorMessage = message;
        emit errorMessageChanged();
    }
}

void OnboardingModel::setBusy(bool busy) {
    if (m_isBusy != busy) {
        m_isBusy = busy;
        emit isBusyChanged();
    }
}
