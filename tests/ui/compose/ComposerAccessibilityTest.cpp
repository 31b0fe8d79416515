#include "PopoverFixture.h"
#include "QuickItems.h"
#include "SandboxDemo.h"
#include "SandboxProcess.h"
#include "TemporaryFolderTesting.h"

#include <QClipboard>
#include <QMimeData>
#include <QTest>

// Assistive technology can tell every control of the composer apart: each one a person can focus
// or act on has a name and a role, in both modes, with files attached, on the Inbox list whose
// custom fields are of every type.
class ComposerAccessibilityTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    QTemporaryDir m_files;

    PopoverWindow& popover() { return m_fixture->popover; }
    QStringList unnamed() { return QuickItems::unnamedControls(popover().contentItem()); }

private slots:
    void initTestCase() { QVERIFY(PopoverFixture::startSandbox(m_sandbox)); }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::inboxListID);
        QVERIFY(m_fixture);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("taskName")));
    }

    void cleanup() { m_fixture.reset(); }

    void everyControlOfTheSingleTaskComposerHasANameAndARole() {
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(sparseFile(m_files.filePath(QStringLiteral("notes.pdf")), 1'000))});
        QGuiApplication::clipboard()->setMimeData(files);
        QTest::keyClick(&popover(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(m_fixture->attachments->rowCount(), 1);
        QTRY_VERIFY(!QuickItems::accessibleNames(popover().contentItem()).isEmpty());
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
    }

    void everyControlOfTheBulkComposerHasANameAndARole() {
        m_fixture->composer->setBulkMode(true);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("bulkEditor")));
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
    }
};

QTEST_MAIN(ComposerAccessibilityTest)
#include "ComposerAccessibilityTest.moc"
