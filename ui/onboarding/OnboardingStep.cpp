// SPDX-License-Identifier: MIT
#include "ui/onboarding/OnboardingStep.h"

using namespace Qt::StringLiterals;

OnboardingStep OnboardingStep::connection(bool isDone) {
    return {1, isDone ? StepState::done : StepState::active, u"Koble til EuroBonus"_s,
            u"Tilkoblet — søkene kjører nå skjult i bakgrunnen."_s,
            u"Innlogget hos SAS — én gang, i et synlig vindu."_s};
}

OnboardingStep OnboardingStep::firstRoute(bool isConnected, qsizetype watchers) {
    const StepState state = watchers > 0  ? StepState::done
                            : isConnected ? StepState::active
                                          : StepState::upcoming;
    return {2, state, u"Velg din første rute"_s,
            QString::number(watchers) + (watchers == 1 ? u" overvåker"_s : u" overvåkere"_s) +
                u" er i gang — første sjekk kjører allerede."_s,
            u"Start med en ferdig pakke — eller bygg din egen etterpå."_s};
}

OnboardingStep OnboardingStep::notifications() {
    return {3,
            StepState::done,
            u"Varsling"_s,
            {},
            u"Skrivebordsvarsler er på som standard — du trenger ikke gjøre noe."_s};
}
