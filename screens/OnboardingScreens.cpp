// SPDX-License-Identifier: MIT
#include "screens/Screen.h"
#include "tests/support/AppWorld.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/session/SessionModel.h"

using namespace Qt::StringLiterals;

namespace onboardingScreens {

struct World : AppWorld {
    SessionState session;
    StandBack standBack{database.safekeeping(), clock};
    SessionModel login{session, standBack, {[] {}, [] {}}};
    OnboardingView view{state, login, clock};
};

void open(Shot& shot, bool isSignedIn, int watchers) {
    auto& world = shot.make<World>();
    if (isSignedIn) {
        world.view.openLogin();
        world.session.setLoginStatus(SASLoginStatus::loggedIn(world.clock.now()));
    }
    for (int i = 0; i < watchers; ++i)
        world.addWatcher();
    shot.show(u"Tindra.Onboarding"_s, u"OnboardingView"_s,
              {{u"model"_s, QVariant::fromValue(&world.view)}});
}

const Screen first(u"onboarding-first"_s, [](Shot& shot) { open(shot, false, 0); });
const Screen second(u"onboarding-second"_s, [](Shot& shot) { open(shot, true, 0); });
const Screen done(u"onboarding-done"_s, [](Shot& shot) {
    open(shot, true, 2);
    shot.page().key(Qt::Key_Tab);
});

} // namespace onboardingScreens
