#include "core/compose/DropHandling.h"
#include "support/TestMain.h"

#include "support/TemporaryFolderTesting.h"

#include <QCoreApplication>
#include <QMimeData>
#include <QTest>
#include <QThread>
#include <QThreadPool>

namespace {
QImage blueSquare() {
    QImage image(3, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    return image;
}

// What a completion saw: whether it ran, on which thread, and with what.
struct Completion {
    bool called = false;
    QThread* thread = nullptr;
    QList<StagedAttachment> items;

    std::function<void(QList<StagedAttachment>)> recorder() {
        return [this](QList<StagedAttachment> staged) {
            called = true;
            thread = QThread::currentThread();
            items = std::move(staged);
        };
    }
};

// Lets every started staging finish and delivers what it posted.
void settle() {
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();
}
} // namespace

class DropHandlingTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolderOverride> m_temporary;

private slots:
    void init() { m_temporary.emplace(); }
    void cleanup() { m_temporary.reset(); }

    void fileURLsComeBeforeImagesInTheAcceptedTypes() {
        const QStringList types = DropHandling::acceptedTypes();
        QVERIFY(types.size() > 2);
        QCOMPARE(types[0], QStringLiteral("text/uri-list"));
        QCOMPARE(types[1], QStringLiteral("application/x-qt-image"));
        QVERIFY(types.contains(QStringLiteral("image/png")));
    }

    void droppedFilesReachTheCompletionOnTheMainThreadLater() {
        const QUrl url = QUrl::fromLocalFile(m_temporary->writeOutside("notes.txt", "n"));
        QMimeData data;
        data.setUrls({url});
        Completion completion;
        QVERIFY(DropHandling::handle(data, this, completion.recorder()));
        QVERIFY(!completion.called);
        QTRY_VERIFY(completion.called);
        QCOMPARE(completion.thread, QCoreApplication::instance()->thread());
        QCOMPARE(completion.items.size(), 1);
        QCOMPARE(completion.items[0].fileURL, url);
    }

    void aDroppedImageIsStaged() {
        QMimeData data;
        data.setImageData(blueSquare());
        Completion completion;
        QVERIFY(DropHandling::handle(data, this, completion.recorder()));
        QTRY_VERIFY(completion.called);
        QCOMPARE(completion.thread, QCoreApplication::instance()->thread());
        QCOMPARE(completion.items.size(), 1);
        QVERIFY(completion.items[0].isImage);
        QCOMPARE(QImage(completion.items[0].fileURL.toLocalFile()).pixelColor(1, 1), QColor(Qt::blue));
    }

    void aDropOfAFileAndAnImageStagesBoth() {
        const QUrl url = QUrl::fromLocalFile(m_temporary->writeOutside("report.pdf", "%PDF"));
        QMimeData data;
        data.setUrls({url});
        data.setImageData(blueSquare());
        Completion completion;
        QVERIFY(DropHandling::handle(data, this, completion.recorder()));
        QTRY_VERIFY(completion.called);
        QCOMPARE(completion.items.size(), 2);
        QCOMPARE(completion.items[0].fileURL, url);
        QVERIFY(!completion.items[0].isImage);
        QVERIFY(completion.items[1].isImage);
        QCOMPARE(QImage(completion.items[1].fileURL.toLocalFile()).pixelColor(1, 1), QColor(Qt::blue));
    }

    void aDropOfMissingFilesIsTakenAndStagesTheImageBesideThem() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QDir::temp().filePath("missing.png"))});
        data.setImageData(blueSquare());
        Completion completion;
        QVERIFY(DropHandling::handle(data, this, completion.recorder()));
        QTRY_VERIFY(completion.called);
        QCOMPARE(completion.items.size(), 1);
        QVERIFY(completion.items[0].isImage);
    }

    void aDropOfItemsNoneOfWhichCanBeStagedIsTakenAndCompletesEmpty() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QDir::temp().filePath("missing.txt")),
                      QUrl(QStringLiteral("https://example.com/a.png"))});
        data.setData(QStringLiteral("image/png"), QByteArray("not a picture"));
        Completion completion;
        QVERIFY(DropHandling::handle(data, this, completion.recorder()));
        QTRY_VERIFY(completion.called);
        QCOMPARE(completion.items, QList<StagedAttachment>());
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    void aDropWithNoneOfTheAcceptedTypesIsRefused_data() {
        QTest::addColumn<bool>("withText");
        QTest::newRow("text and markup") << true;
        QTest::newRow("nothing at all") << false;
    }
    void aDropWithNoneOfTheAcceptedTypesIsRefused() {
        QFETCH(bool, withText);
        QMimeData data;
        if (withText) {
            data.setText(QStringLiteral("text"));
            data.setHtml(QStringLiteral("<p>text</p>"));
        }
        Completion completion;
        QVERIFY(!DropHandling::handle(data, this, completion.recorder()));
        settle();
        QVERIFY(!completion.called);
    }

    void nothingIsCalledOnceTheContextIsGone() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_temporary->writeOutside("a.txt", "a"))});
        Completion completion;
        auto* context = new QObject;
        QVERIFY(DropHandling::handle(data, context, completion.recorder()));
        delete context;
        settle();
        QVERIFY(!completion.called);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DropHandlingTest)
#include "DropHandlingTest.moc"
