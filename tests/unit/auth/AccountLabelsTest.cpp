#include "core/auth/AccountLabels.h"
#include "core/support/NorvaneColor.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
StoredAccount account(const QString& displayName, std::optional<QString> email = std::nullopt,
                      std::optional<QString> initials = std::nullopt) {
    return StoredAccount{7, displayName, std::move(email), std::nullopt, std::move(initials)};
}
} // namespace

// The names of an account in the account menu and the text and colour of its avatar.
class AccountLabelsTest : public QObject {
    Q_OBJECT

private slots:
    void anAccountWithoutEmailShowsOnlyItsName() {
        QCOMPARE(AccountLabels::menuTitle(account(QStringLiteral("Ada Okafor"))), QStringLiteral("Ada Okafor"));
    }

    void anEmailThatIsTheDisplayNameShowsOnce() {
        const QString address = QStringLiteral("ada@northwind.example");
        QCOMPARE(AccountLabels::menuTitle(account(address, address)), address);
    }

    void anotherEmailFollowsTheNameInParentheses() {
        QCOMPARE(AccountLabels::menuTitle(account(QStringLiteral("Ada"), QStringLiteral("ada@northwind.example"))),
                 QStringLiteral("Ada (ada@northwind.example)"));
    }

    void anEmptyEmailAddsNoParentheses() {
        QCOMPARE(AccountLabels::menuTitle(account(QStringLiteral("Ada"), QString())), QStringLiteral("Ada"));
    }

    void theAvatarShowsTheInitialsAsTheyAre() {
        QCOMPARE(AccountLabels::avatarText(account(QStringLiteral("Mia"), std::nullopt, QStringLiteral("mØ"))),
                 QStringLiteral("mØ"));
    }

    void withoutInitialsTheAvatarShowsTheFirstTwoCharactersInUpperCase() {
        QCOMPARE(AccountLabels::avatarText(account(QStringLiteral("ødegård"))), QStringLiteral("ØD"));
        QCOMPARE(AccountLabels::avatarText(account(QStringLiteral("ødegård"), std::nullopt, QString())),
                 QStringLiteral("ØD"));
        QCOMPARE(AccountLabels::avatarText(account(QStringLiteral("x"))), QStringLiteral("X"));
        QCOMPARE(AccountLabels::avatarText(account(QString())), QString());
    }

    void anEmojiNameIsNotCutInsideACharacter() {
        const QString woman = QStringLiteral("👩🏽‍💻");
        QCOMPARE(AccountLabels::avatarText(account(woman + QStringLiteral("🚀 Launch"))), woman + QStringLiteral("🚀"));
    }

    void theServicesColoursReadWithOrWithoutAHash() {
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("#7b68ee"))->name(), QStringLiteral("#7b68ee"));
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("F9D900"))->name(), QStringLiteral("#f9d900"));
    }

    void anAbsentEmptyOrDamagedColourIsNone() {
        QCOMPARE(NorvaneColor::fromHex(std::nullopt), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QString()), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("#")), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("purple")), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("# 7b68ee")), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AccountLabelsTest)
#include "AccountLabelsTest.moc"
