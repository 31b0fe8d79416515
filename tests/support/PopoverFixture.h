#pragma once

#include "desktop/shell/PopoverPages.h"
#include "support/AppStateFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QTest>
#include <memory>

// The popover as the app builds it: the central state of an AppStateFixture, aimed at a sandbox
// when one is given, and the popover's pages.
struct PopoverFixture {
    explicit PopoverFixture(const SandboxProcess* sandbox = nullptr)
        : state(sandbox)
        , app(&state.start())
        , pages(*app, *QGuiApplication::clipboard()) {}

    // Readies Qt Quick as the app does and starts the sandbox the tests share.
    static bool startSandbox(SandboxProcess& sandbox) {
        PopoverWindow::configureQuick();
        return sandbox.start();
    }

    // A fixture aimed at a freshly reset sandbox, its popover shown; null when the sandbox can't be
    // reset or the window doesn't appear.
    static std::unique_ptr<PopoverFixture> shownAgainst(SandboxProcess& sandbox) {
        if (!sandbox.reset()) {
            return nullptr;
        }
        auto fixture = std::make_unique<PopoverFixture>(&sandbox);
        fixture->popover.toggle(std::nullopt);
        return QTest::qWaitForWindowExposed(&fixture->popover) ? std::move(fixture) : nullptr;
    }

    // A fixture shown against a freshly reset sandbox, signed in as its first demo user through the
    // central state, with the list `listID` of Northwind chosen; null when any step fails.
    static std::unique_ptr<PopoverFixture> signedInAgainst(SandboxProcess& sandbox, const QString& listID) {
        std::unique_ptr<PopoverFixture> fixture = shownAgainst(sandbox);
        if (!fixture || runTask(fixture->app->signIn(sandbox.token())).has_value() ||
            !fixture->state.chooseNorthwindList(listID)) {
            return nullptr;
        }
        return fixture;
    }

    // The same, once the popover has the keyboard, with the sandbox's request log emptied of the
    // sign-in's requests.
    static std::unique_ptr<PopoverFixture> activeAgainst(SandboxProcess& sandbox, const QString& listID) {
        std::unique_ptr<PopoverFixture> fixture = signedInAgainst(sandbox, listID);
        if (!fixture || !QTest::qWaitForWindowActive(&fixture->popover) || !sandbox.clearRequests()) {
            return nullptr;
        }
        return fixture;
    }

    // Paints the popover and waits a moment: the paths of the pictures of hostile names that were
    // asked for meanwhile. A picture in rich text would be asked for as soon as the text is laid out.
    QStringList picturesFetchedAfterPainting(SandboxProcess& sandbox) {
        if (popover.grabWindow().isNull()) {
            return {QStringLiteral("(the popover could not be painted)")};
        }
        QTest::qWait(300);
        return SandboxDemo::hostilePictureRequests(sandbox.requests());
    }

    // Shows the chips of all five standard fields; priority and tags are hidden at first.
    void showEveryStandardField() {
        app->settings().set(&AppSettings::visibleDefaultFields,
                            QSet<DefaultField>{DefaultField::status, DefaultField::assignee, DefaultField::dueDate,
                                               DefaultField::priority, DefaultField::tags});
    }

    // The visual item of the popover with this objectName, or null; and the text it shows.
    QQuickItem* item(const QString& objectName) const {
        return QuickItems::visualChild(popover.rootObject(), objectName);
    }
    QString textOf(const QString& objectName) const {
        const QQuickItem* found = item(objectName);
        return found ? found->property("text").toString() : QString();
    }

    // The item of the page with this objectName, or null.
    QObject* find(const QString& objectName) const {
        return popover.rootObject() ? popover.rootObject()->findChild<QObject*>(objectName) : nullptr;
    }

    AppStateFixture state;
    AppState* const app;
    PopoverPages pages;
    // What the tests drive of the pages.
    PopoverWindow& popover = pages.window();
    AuthViewModel* const auth = &pages.auth();
    OnboardingModel* const onboarding = &pages.onboarding();
    AccountsViewModel* const accounts = &pages.accounts();
    LocationPickerViewModel* const location = &pages.location();
    AttachmentListModel* const attachments = &pages.attachments();
    ComposerViewModel* const composer = &pages.composer();
    TemplateMenuViewModel* const templates = &pages.templates();
    AttachmentExporterViewModel* const exporter = &pages.exporter();
    SubmitViewModel* const submit = &pages.submit();
    TabPickerViewModel* const tabs = &pages.tabs();
    MyDayViewModel* const myDay = &pages.myDay();
};
