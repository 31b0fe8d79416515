#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxProcess.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

// Files reach the draft from the signed-in popover: pasted with Ctrl+V, or dropped on it; the list
// shows each with its size and what the size limits say.
class AttachmentInputTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    QTemporaryDir m_files;
    QTemporaryDir m_temporary;

    QUrl file(const QString& name, qint64 size) {
        return QUrl::fromLocalFile(sparseFile(m_files.filePath(name), size));
    }

    static QMimeData* urls(const QList<QUrl>& list) {
        auto* data = new QMimeData;
        data->setUrls(list);
        return data;
    }

    static QImage picture() {
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        return image;
    }

    TaskDraft& draft() { return m_fixture->app->draft(); }
    AttachmentListModel& model() { return *m_fixture->attachments; }
    QString role(int row, AttachmentListModel::Role role) { return model().data(model().index(row), role).toString(); }
    AttachmentListModel::Kind kind(int row) {
        return model().data(model().index(row), AttachmentListModel::KindRole).value<AttachmentListModel::Kind>();
    }

    QQuickItem* visualChild(const QString& objectName) {
        return QuickItems::visualChild(m_fixture->popover.rootObject(), objectName);
    }

    // What assistive technology hears for each listed attachment.
    QStringList rowNames() {
        QStringList names;
        collectRowNames(m_fixture->popover.rootObject(), names);
        return names;
    }

    static void collectRowNames(QQuickItem* item, QStringList& names) {
        for (QQuickItem* child : item->childItems()) {
            if (child->objectName() == QStringLiteral("attachmentThumbnail")) {
                names << QAccessible::queryAccessibleInterface(child)->text(QAccessible::Name);
            }
            collectRowNames(child, names);
        }
    }

    void pressPaste() { QTest::keyClick(&m_fixture->popover, Qt::Key_V, Qt::ControlModifier); }

    void drop(QMimeData* data) {
        const QPoint middle(m_fixture->popover.width() / 2, m_fixture->popover.height() / 2);
        QDragEnterEvent enter(middle, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_fixture->popover, &enter);
        QVERIFY(enter.isAccepted());
        QVERIFY(model().isDropTargeted());
        QVERIFY(m_fixture->find(QStringLiteral("dropOverlay"))->property("visible").toBool());
        QDropEvent dropped(QPointF(middle), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_fixture->popover, &dropped);
        QVERIFY(dropped.isAccepted());
        QVERIFY(!model().isDropTargeted());
    }

private slots:
    void initTestCase() {
        qputenv("TMPDIR", QFile::encodeName(m_temporary.path()));
        PopoverWindow::configureQuick();
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
    }

    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QSignalSpy finished(m_fixture->onboarding, &OnboardingModel::finished);
        m_fixture->onboarding->setToken(m_sandbox.token());
        m_fixture->onboarding->connect();
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, 10'000);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("attachmentStrip")));
    }

    void cleanup() {
        m_fixture.reset();
        QGuiApplication::clipboard()->clear();
    }

    void pastedFilesAreListedWithTheirSizesAndWarnings() {
        QGuiApplication::clipboard()->setMimeData(
            urls({file(QStringLiteral("notes.pdf"), 2'400'000), file(QStringLiteral("demo.mov"), 600'000'000)}));
        pressPaste();
        QCOMPARE(draft().attachments().size(), 2);
        QCOMPARE(model().count(), 2);
        QCOMPARE(role(0, AttachmentListModel::FilenameRole), QStringLiteral("notes.pdf"));
        QCOMPARE(role(0, AttachmentListModel::SizeTextRole), QStringLiteral("2.4 MB"));
        QCOMPARE(role(0, AttachmentListModel::NoteRole), QString());
        QCOMPARE(kind(1), AttachmentListModel::Video);
        QCOMPARE(role(1, AttachmentListModel::NoteRole),
                 QStringLiteral("This file is 600 MB. Norvane allows up to 1 GB per attachment."));
        QCOMPARE(m_fixture->find(QStringLiteral("attachmentCount"))->property("text").toString(),
                 QStringLiteral("2 attachments"));
        QTRY_COMPARE(rowNames().size(), 2);
        QVERIFY(rowNames().contains(QStringLiteral("notes.pdf, 2.4 MB")));
        QVERIFY(rowNames().contains(
            QStringLiteral("demo.mov, 600 MB, This file is 600 MB. Norvane allows up to 1 GB per attachment.")));
    }

    void aFileOverTheLimitIsListedWithItsRejection() {
        QGuiApplication::clipboard()->setMimeData(urls({file(QStringLiteral("huge.mp4"), 1'073'741'824)}));
        pressPaste();
        QCOMPARE(role(0, AttachmentListModel::NoteRole),
                 QStringLiteral("This file is 1.07 GB, which exceeds Norvane's 998.6 MB attachment limit. Try a "
                                "shorter recording or lower quality."));
    }

    void pastedTextIsLeftToTheTextField() {
        QGuiApplication::clipboard()->setText(QStringLiteral("just words"));
        pressPaste();
        QCOMPARE(draft().attachments().size(), 0);
    }

    void anImageWithoutTextIsPastedAsAPicture() {
        auto* data = new QMimeData;
        data->setImageData(picture());
        QGuiApplication::clipboard()->setMimeData(data);
        pressPaste();
        QCOMPARE(draft().attachments().size(), 1);
        QVERIFY(draft().attachments().first().isImage);
        QVERIFY(draft().attachments().first().filename.startsWith(QStringLiteral("Pasted image ")));
        QCOMPARE(kind(0), AttachmentListModel::Image);
        // The thumbnail shows the picture itself, decoded in the background.
        QQuickItem* thumbnail = nullptr;
        QTRY_VERIFY((thumbnail = visualChild(QStringLiteral("attachmentPicture"))));
        QTRY_COMPARE(thumbnail->property("status").toInt(), 1); // Image.Ready
        QVERIFY(thumbnail->isVisible());
        QVERIFY(!visualChild(QStringLiteral("attachmentSymbol"))->isVisible());
    }

    void aPastedPictureIsListedWithTheSizeOfItsWrittenFile() {
        // Noise does not compress, so the written file is large enough to show a size above 0 MB.
        QImage noise(400, 300, QImage::Format_RGB32);
        quint32 state = 1;
        for (int y = 0; y < noise.height(); ++y) {
            for (int x = 0; x < noise.width(); ++x) {
                state = state * 1'664'525u + 1'013'904'223u;
                noise.setPixel(x, y, state >> 8);
            }
        }
        auto* data = new QMimeData;
        data->setImageData(noise);
        QGuiApplication::clipboard()->setMimeData(data);
        pressPaste();
        QCOMPARE(draft().attachments().size(), 1);
        const qint64 written = QFileInfo(draft().attachments().first().fileURL.toLocalFile()).size();
        QVERIFY(written > 100'000);
        QCOMPARE(role(0, AttachmentListModel::SizeTextRole), formattedByteCount(written));
        QCOMPARE(role(0, AttachmentListModel::NoteRole), QString());
    }

    void anImageThatComesWithTextIsNotPasted() {
        auto* data = new QMimeData;
        data->setImageData(picture());
        data->setText(QStringLiteral("caption"));
        QGuiApplication::clipboard()->setMimeData(data);
        pressPaste();
        QCOMPARE(draft().attachments().size(), 0);
    }

    void aPastedFileThatIsGoneIsNotAdded() {
        QGuiApplication::clipboard()->setMimeData(
            urls({QUrl::fromLocalFile(m_files.filePath(QStringLiteral("vanished.txt")))}));
        pressPaste();
        QCOMPARE(draft().attachments().size(), 0);
    }

    void droppedFilesShowTheOverlayAndJoinTheList() {
        const std::unique_ptr<QMimeData> data(urls({file(QStringLiteral("drop.png"), 1000)}));
        drop(data.get());
        QTRY_COMPARE(draft().attachments().size(), 1);
        QVERIFY(draft().attachments().first().isImage);
        QCOMPARE(role(0, AttachmentListModel::FilenameRole), QStringLiteral("drop.png"));
    }

    void aFileNameWithMarkupAndAnAmpersandShowsAsPlainText() {
        // Markup without closing tags, since a file name can't hold "/".
        const QString name = QStringLiteral("<b>Bold<br> & \"quoted\" <img src=pixel.png> Ørders & Ärchive.mov");
        QGuiApplication::clipboard()->setMimeData(urls({file(name, 600'000'000)}));
        pressPaste();
        QCOMPARE(role(0, AttachmentListModel::FilenameRole), name);
        QQuickItem* label = nullptr;
        QTRY_VERIFY((label = visualChild(QStringLiteral("attachmentName"))));
        QCOMPARE(QuickItems::plainText(label), name);
        // The size warning marks the thumbnail, and the note stands under the strip.
        QVERIFY(visualChild(QStringLiteral("attachmentWarning"))->isVisible());
        QCOMPARE(QuickItems::plainText(visualChild(QStringLiteral("attachmentNote"))),
                 role(0, AttachmentListModel::NoteRole));

        // The remove button's tool tip names the file too.
        QQuickItem* button = visualChild(QStringLiteral("removeAttachment"));
        QVERIFY(button);
        QTRY_VERIFY(button->isVisible() && button->width() > 0);
        const QPointF middle = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
        QTest::mouseMove(&m_fixture->popover, middle.toPoint());
        QQuickItem* tip = nullptr;
        QTRY_VERIFY(
            (tip = QuickItems::visualChild(m_fixture->popover.contentItem(), QStringLiteral("plainToolTipText"))) &&
            tip->isVisible());
        QCOMPARE(QuickItems::plainText(tip), QStringLiteral("Remove ") + name);
    }

    void aDragWithoutFilesOrImagesIsRefused() {
        QMimeData text;
        text.setText(QStringLiteral("words"));
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_fixture->popover, &enter);
        QVERIFY(!enter.isAccepted());
        QVERIFY(!model().isDropTargeted());
    }

    void removingARowKeepsItsFile() {
        const QUrl kept = file(QStringLiteral("keep.txt"), 10);
        QGuiApplication::clipboard()->setMimeData(urls({kept, file(QStringLiteral("other.txt"), 20)}));
        pressPaste();
        QCOMPARE(model().count(), 2);
        model().remove(0);
        QCOMPARE(model().count(), 1);
        QCOMPARE(role(0, AttachmentListModel::FilenameRole), QStringLiteral("other.txt"));
        QVERIFY(QFile::exists(kept.toLocalFile()));
        // The thumbnail left moves to the start of the strip.
        QQuickItem* thumbnail = nullptr;
        QTRY_VERIFY((thumbnail = visualChild(QStringLiteral("attachmentThumbnail"))) &&
                    thumbnail->property("filename") == QStringLiteral("other.txt") && thumbnail->x() == 0);
        QQuickItem* button = QuickItems::visualChild(thumbnail, QStringLiteral("removeAttachment"));
        QTRY_VERIFY(button->isVisible() && button->width() > 0);
        const QPointF middle = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
        QTest::mouseClick(&m_fixture->popover, Qt::LeftButton, Qt::NoModifier, middle.toPoint());
        QTRY_COMPARE(model().count(), 0);
    }
};

NORVANEBAR_TEST_MAIN(AttachmentInputTest)
#include "AttachmentInputTest.moc"
