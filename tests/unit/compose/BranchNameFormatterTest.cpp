#include "core/compose/BranchNameFormatter.h"
#include "support/TestMain.h"

#include <QTest>

using BranchNameFormatter::branchName;
using BranchNameFormatter::defaultFormat;
using BranchNameFormatter::linkableTaskID;

class BranchNameFormatterTest : public QObject {
    Q_OBJECT

    static inline const QString taskID = QStringLiteral("abc123");
    static inline const QString taskName = QStringLiteral("Fix login bug");

private slots:
    void theDefaultFormatJoinsIdNameAndUsername() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), defaultFormat),
                 QStringLiteral("NV-abc123_Fix-login-bug_jane"));
    }

    void anEmptyOrAbsentUsernameLeavesNoTrailingSeparator() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QString(), defaultFormat),
                 QStringLiteral("NV-abc123_Fix-login-bug"));
        QCOMPARE(branchName(taskID, taskName, std::nullopt, std::nullopt, defaultFormat),
                 QStringLiteral("NV-abc123_Fix-login-bug"));
    }

    void aCustomIdReplacesTheNorvaneForm() {
        QCOMPARE(branchName(taskID, taskName, QStringLiteral("ENG-42"), QStringLiteral("jane"), defaultFormat),
                 QStringLiteral("ENG-42_Fix-login-bug_jane"));
        QCOMPARE(linkableTaskID(taskID, QStringLiteral("ENG-42")), QStringLiteral("ENG-42"));
    }

    void anEmptyCustomIdCountsAsNone() {
        QCOMPARE(linkableTaskID(taskID, QString()), QStringLiteral("NV-abc123"));
        QCOMPARE(linkableTaskID(taskID, std::nullopt), QStringLiteral("NV-abc123"));
    }

    void aNameInCyrillicOnlyLeavesTheIdAlone() {
        QCOMPARE(branchName(taskID, QStringLiteral("Исправить вход"), std::nullopt, std::nullopt, defaultFormat),
                 QStringLiteral("NV-abc123"));
    }

    void lettersOutsideAsciiAreDroppedNotTransliterated() {
        QCOMPARE(branchName(taskID, QStringLiteral("Café déjà vu"), std::nullopt, std::nullopt, defaultFormat),
                 QStringLiteral("NV-abc123_Caf-dj-vu"));
    }

    void aFormatOfSpacesOnlyMeansTheDefaultFormat() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), QStringLiteral("   \n\t ")),
                 QStringLiteral("NV-abc123_Fix-login-bug_jane"));
    }

    void aFormatWithoutPlaceholdersIsTheBranchNameSanitised() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), QStringLiteral("my hot fix!")),
                 QStringLiteral("myhotfix"));
    }

    void aSpaceInTheFormatIsRemovedWithoutLeavingADash() {
        QCOMPARE(
            branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), QStringLiteral(":username: / :taskId:")),
            QStringLiteral("jane/NV-abc123"));
    }

    void runsOfSeparatorsCollapse() {
        QCOMPARE(branchName(taskID, QStringLiteral("a -- b __ c"), std::nullopt, std::nullopt,
                            QStringLiteral(":taskId:__--:taskName:")),
                 QStringLiteral("NV-abc123_-a-b-_-c"));
    }

    void aLongNameIsCutAtSixtyAndASeparatorAtTheCutIsTrimmed() {
        // "NV-abc123_" is 10 characters, so the dash falls on the 60th.
        const QString words = QString(49, QLatin1Char('a')) + QStringLiteral(" bbbb");
        const QString name = branchName(taskID, words, std::nullopt, std::nullopt, defaultFormat);
        QCOMPARE(name, QStringLiteral("NV-abc123_") + QString(49, QLatin1Char('a')));
        QCOMPARE(name.size(), 59);
    }

    void aLongNameWithoutSeparatorAtTheCutIsSixtyCharactersLong() {
        const QString name =
            branchName(taskID, QString(100, QLatin1Char('x')), std::nullopt, std::nullopt, defaultFormat);
        QCOMPARE(name, QStringLiteral("NV-abc123_") + QString(50, QLatin1Char('x')));
    }

    void aFormatOfOnlyRemovedCharactersGivesTheIdUntouched() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), QStringLiteral("@@ !! ##")),
                 QStringLiteral("NV-abc123"));
        // The id is returned as it is, even with characters a name may not hold.
        QCOMPARE(branchName(taskID, taskName, QStringLiteral("ENG #42 ü"), QStringLiteral("jane"),
                            QStringLiteral("@@ !! ##")),
                 QStringLiteral("ENG #42 ü"));
    }

    void dotsAndSlashesMakeFolderStyleBranches() {
        QCOMPARE(branchName(taskID, QStringLiteral("v1.2 release"), std::nullopt, QStringLiteral("jane"),
                            QStringLiteral("feature/:taskId:")),
                 QStringLiteral("feature/NV-abc123"));
        QCOMPARE(branchName(taskID, QStringLiteral("v1.2 release"), std::nullopt, QStringLiteral("jane"),
                            QStringLiteral(":username:/:taskName:")),
                 QStringLiteral("jane/v1.2-release"));
    }

    void placeholdersAreCaseSensitive() {
        QCOMPARE(branchName(taskID, taskName, std::nullopt, QStringLiteral("jane"), QStringLiteral(":TaskId:")),
                 QStringLiteral("TaskId"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(BranchNameFormatterTest)
#include "BranchNameFormatterTest.moc"
