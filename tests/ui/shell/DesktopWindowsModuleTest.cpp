#include "desktop/shell/DesktopWindowsModule.h"
#include "core/shell/HotKeyManager.h"
#include "desktop/shell/ProgramModules.h"
#include "platform/linux/AutostartEntry.h"
#include "platform/linux/NoGlobalShortcuts.h"
#include "support/AppStateFixture.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>

// The program holds its windows module unloaded until a window or a device of a recording is
// needed: hiding the popover, asking whether it shows and closing a recording's panels load
// nothing. This test program has no module beside it, so a load would end it.
class DesktopWindowsModuleTest : public QObject {
    Q_OBJECT

private slots:
    void findsNoModuleBesideAProgramWithoutOne() {
        QVERIFY(ProgramModules::path(ProgramModules::windowsFileName).isEmpty());
        QCOMPARE(ProgramModules::missing(), QString::fromLatin1(ProgramModules::windowsFileName));
    }

    void hidingAndClosingLoadNothing() {
        AppStateFixture state;
        QTemporaryDir autostart;
        AutostartEntry loginItem(autostart.path(), QStringLiteral("/usr/bin/true"));
        NoGlobalShortcuts shortcuts;
        HotKeyManager hotKeys(shortcuts);
        int presentations = 0;
        DesktopWindowsModule module({.app = state.start(),
                                     .loginItem = loginItem,
                                     .hotKeys = hotKeys,
                                     .popoverPresented = [&presentations](bool) { ++presentations; },
                                     .menuRequested = [](QPoint) {}});

        module.hidePopover();
        QVERIFY(!module.isPopoverVisible());
        RecordingPanels& panels = module.recordingPanels();
        panels.closeCountdown();
        panels.hideControls();
        panels.dismissFacecamPreview();
        panels.dismissReview();
        module.close();
        QVERIFY(!module.isPopoverVisible());
        QCOMPARE(presentations, 0);
    }
};

NORVANEBAR_TEST_MAIN(DesktopWindowsModuleTest)
#include "DesktopWindowsModuleTest.moc"
