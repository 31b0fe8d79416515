#include "desktop/auth/AccountsViewModel.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/auth/AccountLabels.h"
#include "core/support/NorvaneColor.h"

#include <algorithm>

namespace {
bool holdsAccount(const QList<StoredAccount>& accounts, qint64 accountID) {
    return std::any_of(accounts.begin(), accounts.end(),
                       [accountID](const StoredAccount& account) { return account.id == accountID; });
}

QString colorName(const StoredAccount& account) {
    const std::optional<NorvaneColor> color = NorvaneColor::fromHex(account.color);
    return color ? color->name() : QString();
}
} // namespace

AccountsViewModel::AccountsViewModel(AuthController& auth, SettingsStore& settings, ServiceAddresses addresses,
                                     QObject* parent)
    : QAbstractListModel(parent)
    , m_auth(auth)
    , m_settings(settings)
    , m_tokenForm(auth, std::move(addresses))
    , m_accounts(settings.settings().accounts)
    , m_activeAccountID(settings.settings().activeAccountID) {
    QObject::connect(&settings, &SettingsStore::settingsChanged, this, &AccountsViewModel::syncAccounts);
}

int AccountsViewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant AccountsViewModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const StoredAccount& account = m_accounts.at(index.row());
    switch (role) {
    case AccountIDRole:
        return account.id;
    case DisplayNameRole:
        return account.displayName;
    case EmailRole:
        return account.email.value_or(QString());
    case AvatarTextRole:
        return AccountLabels::avatarText(account);
    case ColorRole:
        return colorName(account);
    case MenuTitleRole:
        return menuTitle(account);
    case IsActiveRole:
        return m_activeAccountID == account.id;
    case IsSwitchingRole:
        return m_switchingAccountID == account.id;
    default:
        return {};
    }
}

QHash<int, QByteArray> AccountsViewModel::roleNames() const {
    return {{AccountIDRole, "accountID"},   {DisplayNameRole, "displayName"}, {EmailRole, "email"},
            {AvatarTextRole, "avatarText"}, {ColorRole, "accountColor"},      {MenuTitleRole, "menuTitle"},
            {IsActiveRole, "isActive"},     {IsSwitchingRole, "isSwitching"}};
}

std::optional<StoredAccount> AccountsViewModel::activeAccount() const {
    const auto found = std::find_if(m_accounts.begin(), m_accounts.end(),
                                    [this](const StoredAccount& account) { return m_activeAccountID == account.id; });
    return found != m_accounts.end() ? std::optional(*found) : std::nullopt;
}

QString AccountsViewModel::activeDisplayName() const {
    const std::optional<StoredAccount> active = activeAccount();
    return active ? active->displayName : QString();
}

QString AccountsViewModel::activeAvatarText() const {
    const std::optional<StoredAccount> active = activeAccount();
    return active ? AccountLabels::avatarText(*active) : QString();
}

QString AccountsViewModel::activeColor() const {
    const std::optional<StoredAccount> active = activeAccount();
    return active ? colorName(*active) : QString();
}

QString AccountsViewModel::menuTitle(const StoredAccount& account) {
    return AccountLabels::menuTitle(account);
}

QVariant AccountsViewModel::switchingAccountIDValue() const {
    return m_switchingAccountID ? QVariant(*m_switchingAccountID) : QVariant();
}

void AccountsViewModel::switchTo(qint64 accountID) {
    setSwitchingAccountID(accountID);
    startTask(this, switching(accountID));
}

QCoro::Task<> AccountsViewModel::switching(qint64 accountID) {
    QCoro::Task<bool> switchAccount = awaitGuarded(LoadGuard(this), m_auth.switchAccount(accountID, false));
    // A later switch started here owns the indicator now.
    if (co_await std::move(switchAccount) && m_switchingAccountID == accountID) {
        setSwitchingAccountID(std::nullopt);
    }
}

void AccountsViewModel::remove(qint64 accountID) {
    startTask(this, m_auth.removeAccount(accountID));
}

void AccountsViewModel::signOut() {
    m_auth.signOut();
}

void AccountsViewModel::addAccount() {
    emit openSettingsRequested();
}

void AccountsViewModel::setSwitchingAccountID(std::optional<qint64> accountID) {
    if (m_switchingAccountID == accountID) {
        return;
    }
    m_switchingAccountID = accountID;
    if (!m_accounts.isEmpty()) {
        emit dataChanged(index(0), index(count() - 1), {IsSwitchingRole});
    }
    emit switchingAccountIDChanged();
}

void AccountsViewModel::syncAccounts() {
    const AppSettings& settings = m_settings.settings();
    const qsizetype countBefore = m_accounts.size();
    const std::optional<StoredAccount> activeBefore = activeAccount();
    const std::optional<qint64> activeIDBefore = m_activeAccountID;
    removeGoneRows(settings.accounts);
    if (!insertNewRows(settings.accounts)) {
        beginResetModel();
        m_accounts = settings.accounts;
        endResetModel();
    }
    m_activeAccountID = settings.activeAccountID;
    for (qsizetype row = 0; row < m_accounts.size(); ++row) {
        const StoredAccount& stored = settings.accounts.at(row);
        const bool activeChanged = (activeIDBefore == stored.id) != (m_activeAccountID == stored.id);
        if (m_accounts.at(row) != stored || activeChanged) {
            m_accounts[row] = stored;
            emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
        }
    }
    if (m_accounts.size() != countBefore) {
        emit countChanged();
    }
    if (activeAccount() != activeBefore) {
        emit activeChanged();
    }
}

void AccountsViewModel::removeGoneRows(const QList<StoredAccount>& stored) {
    for (qsizetype row = m_accounts.size() - 1; row >= 0; --row) {
        if (!holdsAccount(stored, m_accounts.at(row).id)) {
            beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
            m_accounts.removeAt(row);
            endRemoveRows();
        }
    }
}

bool AccountsViewModel::insertNewRows(const QList<StoredAccount>& stored) {
    for (qsizetype row = 0; row < stored.size(); ++row) {
        if (row < m_accounts.size() && m_accounts.at(row).id == stored.at(row).id) {
            continue;
        }
        if (holdsAccount(m_accounts, stored.at(row).id)) {
            return false;
        }
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
        m_accounts.insert(row, stored.at(row));
        endInsertRows();
    }
    return m_accounts.size() == stored.size();
}
