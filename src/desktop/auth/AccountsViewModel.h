#pragma once

#include "core/app/ServiceAddresses.h"
#include "core/auth/AuthController.h"
#include "core/settings/SettingsStore.h"
#include "desktop/auth/OnboardingModel.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <optional>

// The stored accounts, in their stored order, for the account menu of the popover and the Account
// pane of the settings: each with its names and avatar, which one is active and which one is being
// switched to; switching, removing and signing out; and the token form that adds an account.
class AccountsViewModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the view models of its windows.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // The active account's display name, the text and the colour ("#rrggbb", empty for none) of its
    // avatar; all empty while no stored account is active.
    Q_PROPERTY(QString activeDisplayName READ activeDisplayName NOTIFY activeChanged)
    Q_PROPERTY(QString activeAvatarText READ activeAvatarText NOTIFY activeChanged)
    Q_PROPERTY(QString activeColor READ activeColor NOTIFY activeChanged)
    // The id of the account a switch started here is going to; null when none runs.
    Q_PROPERTY(QVariant switchingAccountID READ switchingAccountIDValue NOTIFY switchingAccountIDChanged)
    // The token pasted to add an account, the message of the last attempt, and whether one runs.
    Q_PROPERTY(OnboardingModel* tokenForm READ tokenForm CONSTANT)

public:
    enum Role {
        AccountIDRole = Qt::UserRole + 1,
        DisplayNameRole,
        EmailRole,
        // What the avatar shows: the initials, else the first two characters of the name.
        AvatarTextRole,
        // "#rrggbb", or empty when the service gave no usable colour.
        ColorRole,
        MenuTitleRole,
        IsActiveRole,
        IsSwitchingRole,
    };

    // `addresses` tell where the service lists a person's tokens.
    AccountsViewModel(AuthController& auth, SettingsStore& settings, ServiceAddresses addresses,
                      QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_accounts.size()); }
    // The stored account whose id is the active one, if any.
    std::optional<StoredAccount> activeAccount() const;
    QString activeDisplayName() const;
    QString activeAvatarText() const;
    QString activeColor() const;
    std::optional<qint64> switchingAccountID() const { return m_switchingAccountID; }
    OnboardingModel* tokenForm() { return &m_tokenForm; }

    // The display name, and " (email)" when the account has an email other than that name.
    static QString menuTitle(const StoredAccount& account);

    // Makes the account active; switchingAccountID names it until the switch has ended.
    Q_INVOKABLE void switchTo(qint64 accountID);
    // Forgets the account and its token; when it was active, the first remaining one takes over.
    Q_INVOKABLE void remove(qint64 accountID);
    // Ends the active account; the others stay stored.
    Q_INVOKABLE void signOut();
    // "Add Account…": asks for the settings' Account pane.
    Q_INVOKABLE void addAccount();

signals:
    void countChanged();
    void activeChanged();
    void switchingAccountIDChanged();
    // The person wants to add an account: whoever owns the settings window shows its Account pane.
    void openSettingsRequested();

private:
    QVariant switchingAccountIDValue() const;
    QCoro::Task<> switching(qint64 accountID);
    void setSwitchingAccountID(std::optional<qint64> accountID);
    // Brings the rows up to the stored accounts with row-level changes.
    void syncAccounts();
    void removeGoneRows(const QList<StoredAccount>& stored);
    // False when the stored order differs from the rows' beyond additions.
    bool insertNewRows(const QList<StoredAccount>& stored);

    AuthController& m_auth;
    SettingsStore& m_settings;
    OnboardingModel m_tokenForm;
    QList<StoredAccount> m_accounts;
    std::optional<qint64> m_activeAccountID;
    std::optional<qint64> m_switchingAccountID;
};
