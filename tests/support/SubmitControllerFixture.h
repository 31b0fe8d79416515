#pragma once

#include "core/app/AppState.h"
#include "core/submit/SubmitController.h"
#include "support/SubmitPipeline.h"
#include "support/SubmitTesting.h"

#include <QStringList>

// The popover's submission on a central state, with a queue of jobs of its own whose notifier
// records, and every phase its session showed, in order ("none" once the session ended). The state
// and the registry must outlive it.
struct SubmitControllerFixture {
    SubmitControllerFixture(AppState& app, const StorageProviderRegistry& providers)
        : pipeline(providers, app.settings())
        , controller(app.draft(), app.settings(), app.location(), app.client(), pipeline.queue, pipeline.notifier) {
        QObject::connect(&controller, &SubmitController::foregroundSubmitChanged, &controller, [this] {
            const std::optional<ForegroundSubmitSession>& session = controller.foregroundSubmit();
            shown.append(session ? SubmitTesting::describe(session->phase) : QStringLiteral("none"));
        });
    }
    SubmitControllerFixture(const SubmitControllerFixture&) = delete;
    SubmitControllerFixture& operator=(const SubmitControllerFixture&) = delete;

    // The phase the session shows now, if it is of that kind.
    template <typename Phase> const Phase* shownPhase() const {
        const std::optional<ForegroundSubmitSession>& session = controller.foregroundSubmit();
        return session ? std::get_if<Phase>(&session->phase) : nullptr;
    }

    SubmitPipeline pipeline;
    SubmitController controller;
    QStringList shown;
};
