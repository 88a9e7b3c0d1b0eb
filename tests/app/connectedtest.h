// A fixture with a controller that is connected to a fake Canvas, on clocks that the tests set.
#pragma once

#include "app/mainwindowcontroller.h"
#include "support/core.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/servedcourse.h"
#include "support/until.h"

#include <gtest/gtest.h>

namespace ellwynd::test {

/// The wall clock stands still. The machine's clock runs, and the tests advance it as well.
inline Date wallTime;
inline ElapsedTime slept;

inline Date wallClock() {
    return wallTime;
}

inline ElapsedTime machineClock() {
    return elapsedNow() + slept;
}

/// Canvas has a term of two courses, and a course without a term. The controller has not read them.
struct ConnectedTest : testing::Test {
    Core core;
    FakeCanvas canvas;
    MainWindowController controller{core.defaults, core.connector, core.stores, core.trends,
                                    core.sinks,    wallClock,      machineClock};
    std::vector<CanvasError> errors;
    /// Whether each pass was complete.
    std::vector<bool> passes;

    explicit ConnectedTest(PreferenceMap arguments = {}) : core(std::move(arguments), wallClock) {
        wallTime = noon;
        slept = {};
        trustAuthority();
        canvas.serve(
            QStringLiteral("/api/v1/courses"),
            {R"({"id":1,"name":"Art","term":{"id":9,"name":"Fall","start_at":"2026-09-01T00:00:00Z",
                 "end_at":"2026-12-20T00:00:00Z"}})",
             R"({"id":2,"name":"Bio","term":{"id":9,"name":"Fall"}})",
             R"({"id":3,"name":"Chem"})"});
        for (const int course : {1, 2, 3})
            serveScores(canvas, course, 90);
        core.connectTo(canvas.address());
        QObject::connect(
            &controller, &MainWindowController::errorDidOccur, &controller,
            [this](const CanvasError &error) { errors.push_back(error); });
        QObject::connect(
            &controller, &MainWindowController::passDidEnd, &controller,
            [this](bool complete) { passes.push_back(complete); });
    }

    [[nodiscard]] bool untilPasses(std::size_t count) const {
        return until([&] { return passes.size() == count; });
    }

    [[nodiscard]] bool untilQuiet() {
        return until([&] {
            return !controller.isLoading() && !controller.dashboard().progress().running &&
                core.session.requestLimiter().inFlight() == 0;
        });
    }
};

} // namespace ellwynd::test
