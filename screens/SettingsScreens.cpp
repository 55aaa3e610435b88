// SPDX-License-Identifier: MIT
#include "screens/Screen.h"
#include "tests/ui/settings/SettingsWorld.h"

#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace settingsScreens {

SettingsWorld& open(Shot& shot, const std::function<void(SettingsWorld&)>& build = {}) {
    auto& world = shot.make<SettingsWorld>();
    if (build)
        build(world);
    shot.show(u"Tindra.Settings"_s, u"SettingsView"_s,
              {{u"model"_s, QVariant::fromValue(&world.view)}});
    settle();
    return world;
}

void signedIn(SettingsWorld& world) {
    world.storeDetails(u"EBN 601 234 567"_s, u"hemmelig"_s);
    world.database.settings().set(Setting::autoLogin, true);
    world.session.setLoginStatus(SASLoginStatus::loggedIn(world.clock.now()));
}

const Screen usual(u"settings-usual"_s, [](Shot& shot) { open(shot, signedIn); });

const Screen whole(u"settings-whole"_s, {880, 1300}, [](Shot& shot) { open(shot, signedIn); });

const Screen narrow(u"settings-narrow"_s, {640, 1400}, [](Shot& shot) { open(shot, signedIn); });

const Screen fresh(u"settings-fresh"_s, {1120, 880}, [](Shot& shot) {
    open(shot);
    shot.page().key(Qt::Key_Tab);
});

const Screen editing(u"settings-editing"_s, {1120, 880}, [](Shot& shot) {
    open(shot, signedIn);
    shot.page().click(u"ebPassword"_s);
    shot.page().type(u"nytt"_s);
});

const Screen checking(u"settings-checking"_s, {1120, 880}, [](Shot& shot) {
    open(shot, [](SettingsWorld& world) {
        world.session.setLoginStatus(SASLoginStatus::checking());
        world.state.setNotifyOn(false);
        world.state.setPollIntervalMin(15);
    });
});

const Screen wrong(u"settings-wrong"_s, {880, 1400}, [](Shot& shot) {
    auto& world = open(shot, [](SettingsWorld& made) {
        made.session.setLoginStatus(SASLoginStatus::loggedOut());
        made.engineWarning =
            u"WebKitGTK 2.50.6 får ikke lenger sikkerhetsoppdateringer. Oppgrader til Debian 13 "
            u"før du bruker Tindra med en ekte konto."_s;
        made.autostart.problem = u"Oppstartslisten kan ikke endres: mappen er skrivebeskyttet."_s;
    });
    Q_EMIT world.secrets.unavailable(
        u"Nøkkelringen kan ikke brukes (den svarer ikke). Innloggingen huskes ikke til neste gang. "
        u"Start en Secret Service, for eksempel gnome-keyring, og lås den opp."_s);
    shot.page().click(u"autostartSwitch"_s);
    shot.page().click(u"copyDiagnosis"_s);
});

} // namespace settingsScreens
