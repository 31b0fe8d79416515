#include "desktop/shell/ColorSchemePalette.h"
#include "support/ContrastTesting.h"
#include "support/ManualColorScheme.h"
#include "support/PopoverFixture.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QClipboard>
#include <QHash>
#include <QMimeData>
#include <QQuickItem>
#include <QTest>

using ColorScheme = ColorSchemeSource::ColorScheme;
using ContrastTesting::contrast;
using ContrastTesting::luminance;

namespace {
// Text needs 4.5:1 against what lies behind it, a symbol 3:1 (WCAG's AA).
constexpr double textContrast = 4.5;
constexpr double symbolContrast = 3.0;
// A symbol shows when this many of its pixels stand out from what lies behind it.
constexpr int visibleSymbolPixels = 8;

// `top` drawn with `opacity` over `under`.
QColor over(const QColor& top, double opacity, const QColor& under) {
    const double alpha = top.alphaF() * opacity;
    return QColor::fromRgbF(float(top.redF() * alpha + under.redF() * (1 - alpha)),
                            float(top.greenF() * alpha + under.greenF() * (1 - alpha)),
                            float(top.blueF() * alpha + under.blueF() * (1 - alpha)));
}

// The colour that covers most of the area: what lies behind a text or a symbol.
QColor dominant(const QImage& image, const QRect& area) {
    QHash<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            ++counts[image.pixel(x, y)];
        }
    }
    QRgb most = 0;
    int mostCount = -1;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() > mostCount) {
            most = count.key();
            mostCount = count.value();
        }
    }
    return QColor(most);
}

double opacityOf(const QQuickItem* item) {
    double opacity = 1;
    for (; item; item = item->parentItem()) {
        opacity *= item->opacity();
    }
    return opacity;
}

QRect areaOf(const QQuickItem* item, const QImage& image) {
    return item->mapRectToScene(item->boundingRect()).toAlignedRect() & image.rect();
}

bool isText(const QQuickItem* item) {
    return (item->inherits("QQuickText") || item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit")) &&
           !item->inherits("QQuickPlaceholderText") && !item->property("text").toString().isEmpty();
}

bool isSymbol(const QQuickItem* item) {
    return item->inherits("QQuickImage") &&
           item->property("source").toUrl().toString().startsWith(QStringLiteral("image://symbol/"));
}

void shownItems(QQuickItem* item, QList<QQuickItem*>& found) {
    for (QQuickItem* child : item->childItems()) {
        if (child->isVisible() && child->opacity() > 0) {
            found << child;
            shownItems(child, found);
        }
    }
}

QString described(const QQuickItem* item) {
    const QString text = item->property("text").toString();
    return text.isEmpty() ? item->property("source").toString() : u'"' + text + u'"';
}
} // namespace

// The popover in the desktop's colour scheme, light and dark: the window's colours follow it, also
// when it changes while the popover is open, and every page reads well in both.
class PopoverColorSchemeTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    ManualColorScheme m_scheme;
    std::unique_ptr<ColorSchemePalette> m_palette;
    std::unique_ptr<PopoverFixture> m_fixture;
    QTemporaryDir m_files;

    QImage shot() { return m_fixture->popover.grabWindow().convertToFormat(QImage::Format_RGB32); }

    // The window's own colour, inside its frame at the bottom, where no page puts anything.
    QColor windowColour() {
        const QImage image = shot();
        return image.pixelColor(4, image.height() - 4);
    }

    // Whether the window shows the scheme: the palette reaches the pages through the event loop.
    bool shows(ColorScheme scheme) {
        const double windowLuminance = luminance(windowColour());
        return scheme == ColorScheme::dark ? windowLuminance < 0.05 : windowLuminance > 0.5;
    }

    QQuickItem* textItem(const QString& text) {
        QList<QQuickItem*> items;
        shownItems(m_fixture->popover.contentItem(), items);
        for (QQuickItem* item : items) {
            if (isText(item) && item->property("text").toString() == text) {
                return item;
            }
        }
        return nullptr;
    }

    // What of the page is hard to read: enabled texts below 4.5:1 against what lies behind them,
    // and symbols with no part at 3:1.
    QStringList hardToRead() {
        const QImage image = shot();
        QList<QQuickItem*> items;
        shownItems(m_fixture->popover.contentItem(), items);
        QStringList found;
        for (const QQuickItem* item : items) {
            const QRect area = areaOf(item, image);
            if (area.isEmpty()) {
                continue;
            }
            if (isText(item) && item->isEnabled()) {
                const QColor behind = dominant(image, area);
                const QColor text = over(item->property("color").value<QColor>(), opacityOf(item), behind);
                const double ratio = contrast(text, behind);
                if (ratio < textContrast) {
                    found << QStringLiteral("text %1: %2:1, %3 on %4")
                                 .arg(described(item))
                                 .arg(ratio, 0, 'f', 2)
                                 .arg(text.name(), behind.name());
                }
            } else if (isSymbol(item) && item->parentItem()) {
                const QColor behind = dominant(image, areaOf(item->parentItem(), image));
                int standingOut = 0;
                for (int y = area.top(); y <= area.bottom(); ++y) {
                    for (int x = area.left(); x <= area.right(); ++x) {
                        standingOut += contrast(image.pixelColor(x, y), behind) >= symbolContrast ? 1 : 0;
                    }
                }
                if (standingOut < visibleSymbolPixels) {
                    found << QStringLiteral("symbol %1: %2 pixels stand out from %3")
                                 .arg(described(item))
                                 .arg(standingOut)
                                 .arg(behind.name());
                }
            }
        }
        return found;
    }

    void createTask(const QString& name) {
        m_fixture->composer->setName(name);
        m_fixture->composer->submit();
    }

    bool signIn() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::supportListID);
        return m_fixture != nullptr;
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        QGuiApplication::setPalette(QPalette());
        m_palette = std::make_unique<ColorSchemePalette>(m_scheme);
    }

    void cleanup() {
        m_fixture.reset();
        m_scheme.set(ColorScheme::noPreference);
        m_palette.reset();
        QGuiApplication::setPalette(QPalette());
    }

    void theDarkPopoverHasADarkWindowAndLightText() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QTRY_VERIFY(shows(ColorScheme::light));
        m_scheme.set(ColorScheme::dark);
        QTRY_VERIFY2(shows(ColorScheme::dark), qPrintable(windowColour().name()));
        QQuickItem* title = textItem(QStringLiteral("Connect to Norvane"));
        QVERIFY(title);
        QVERIFY2(luminance(title->property("color").value<QColor>()) > 0.7,
                 qPrintable(title->property("color").value<QColor>().name()));
    }

    void aDarkSchemeThatCameBeforeThePopoverLoadedReachesIt() {
        m_scheme.set(ColorScheme::dark);
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QTRY_VERIFY2(shows(ColorScheme::dark), qPrintable(windowColour().name()));
    }

    void lightAgainBringsBackThePlatformsColours() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QTRY_VERIFY(shows(ColorScheme::light));
        const QColor light = windowColour();
        m_scheme.set(ColorScheme::dark);
        QTRY_VERIFY(shows(ColorScheme::dark));
        m_scheme.set(ColorScheme::light);
        QTRY_COMPARE(windowColour(), light);
    }

    // The scheme, and whether it comes while the page is shown.
    void theSignInPageReadsWell_data() {
        QTest::addColumn<ColorScheme>("scheme");
        QTest::addColumn<bool>("whileShown");
        QTest::newRow("light") << ColorScheme::light << false;
        QTest::newRow("dark") << ColorScheme::dark << false;
        QTest::newRow("turned dark while shown") << ColorScheme::dark << true;
    }
    void theSignInPageReadsWell() {
        QFETCH(ColorScheme, scheme);
        QFETCH(bool, whileShown);
        m_scheme.set(whileShown ? ColorScheme::light : scheme);
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->onboarding->setToken(QStringLiteral("pk_not_a_demo_token"));
        m_fixture->onboarding->connect();
        QTRY_VERIFY(textItem(m_fixture->onboarding->errorMessage()));
        QVERIFY(!m_fixture->onboarding->errorMessage().isEmpty());
        m_scheme.set(scheme);
        QTRY_VERIFY(shows(scheme));
        const QStringList problems = hardToRead();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
    }

    void theComposerReadsWell_data() { theSignInPageReadsWell_data(); }
    void theComposerReadsWell() {
        QFETCH(ColorScheme, scheme);
        QFETCH(bool, whileShown);
        m_scheme.set(whileShown ? ColorScheme::light : scheme);
        QVERIFY(signIn());
        m_fixture->composer->setName(QStringLiteral("Prepare the quarterly review"));
        m_fixture->composer->setDescriptionText(QStringLiteral("Figures from finance, slides by Friday."));
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(sparseFile(m_files.filePath(QStringLiteral("notes.pdf")), 180'000)),
                        QUrl::fromLocalFile(sparseFile(m_files.filePath(QStringLiteral("demo.mov")), 612'000'000))});
        QGuiApplication::clipboard()->setMimeData(files);
        QTest::keyClick(&m_fixture->popover, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(textItem(QStringLiteral("demo.mov")));
        AttachmentListModel& attachments = *m_fixture->attachments;
        const QString note = attachments.data(attachments.index(1), AttachmentListModel::NoteRole).toString();
        QVERIFY(!note.isEmpty());
        QTRY_VERIFY(textItem(note));
        m_scheme.set(scheme);
        QTRY_VERIFY(shows(scheme));
        const QStringList problems = hardToRead();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
    }

    void theResultPagesReadWell_data() {
        QTest::addColumn<ColorScheme>("scheme");
        QTest::newRow("light") << ColorScheme::light;
        QTest::newRow("dark") << ColorScheme::dark;
    }
    void theResultPagesReadWell() {
        QFETCH(ColorScheme, scheme);
        m_scheme.set(scheme);
        QVERIFY(signIn());
        QTRY_VERIFY(shows(scheme));
        SubmitViewModel& submit = *m_fixture->submit;
        const auto readsWell = [this](const char* page) {
            const QStringList problems = hardToRead();
            return problems.isEmpty() ? QString() : QString::fromLatin1(page) + u'\n' + problems.join(u'\n');
        };

        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationDelay(1500)));
        createTask(QStringLiteral("Plan the launch"));
        QTRY_COMPARE(submit.page(), SubmitViewModel::Progress);
        QTRY_VERIFY(textItem(submit.progressText()));
        QCOMPARE(readsWell("progress"), QString());
        QTRY_COMPARE(submit.page(), SubmitViewModel::Done);
        QTRY_VERIFY(textItem(QStringLiteral("Task created")));
        QCOMPARE(readsWell("done"), QString());
        submit.leave();

        m_fixture->composer->setBulkMode(true);
        m_fixture->composer->setBulkLines(QStringLiteral("Draft the agenda\nBook the room"));
        m_fixture->composer->submit();
        QTRY_COMPARE(submit.page(), SubmitViewModel::BulkDone);
        QTRY_VERIFY(textItem(QStringLiteral("Book the room")));
        QCOMPARE(readsWell("bulk done"), QString());
        submit.leave();

        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationAnswer(500)));
        m_fixture->composer->setBulkMode(false);
        createTask(QStringLiteral("Order new badges"));
        QTRY_COMPARE(submit.page(), SubmitViewModel::Failed);
        QTRY_VERIFY(textItem(QStringLiteral("Couldn't create task")));
        QCOMPARE(readsWell("failed"), QString());
        submit.leave();

        m_fixture->state.notificationCenter().setPermission(false);
        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationDelay(600)));
        createTask(QStringLiteral("Book the room"));
        QTRY_COMPARE(submit.page(), SubmitViewModel::Progress);
        submit.createNewTask();
        QTRY_VERIFY(submit.hasBanner());
        QTRY_VERIFY(textItem(QStringLiteral("Background task completed")));
        QCOMPARE(readsWell("banner"), QString());
    }
};

NORVANEBAR_TEST_MAIN(PopoverColorSchemeTest)
#include "PopoverColorSchemeTest.moc"
