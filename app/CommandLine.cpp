// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "core/Err.h"

using namespace Qt::StringLiterals;

CommandLine CommandLine::parse(const QStringList& arguments) {
    CommandLine line;
    if (arguments.isEmpty())
        throw Err{u"Si hva Tindra skal gjøre, for eksempel «tindra hunt --demo --once». "
                  u"«tindra --help» viser alt."_s};
    const QString& first = arguments.first();
    if (first == u"--version" || first == u"--help" || first == u"-h") {
        if (arguments.size() > 1)
            throw Err{u"«%1» står alene. «tindra --help» viser bruken."_s.arg(first)};
        line.command = first == u"--version" ? Command::version : Command::help;
        return line;
    }
    if (first == u"hunt")
        line.command = Command::hunt;
    else if (first == u"sign-in")
        line.command = Command::signIn;
    else
        throw Err{
            u"Ukjent kommando «%1». «tindra --help» viser kommandoene."_s.arg(first.simplified())};
    const bool isHunt = line.command == Command::hunt;
    bool wantsHelp = false;
    for (const QString& option : arguments.sliced(1)) {
        if (option == u"--once" && isHunt)
            line.once = true;
        else if (option == u"--json" && isHunt)
            line.json = true;
        else if (option == u"--demo")
            line.demo = true;
        else if (option == u"--help" || option == u"-h")
            wantsHelp = true;
        else
            throw Err{u"Ukjent valg «%1» for «tindra %2». «tindra --help» viser valgene."_s.arg(
                option.simplified(), first)};
    }
    if (wantsHelp)
        line.command = Command::help;
    return line;
}

QString CommandLine::helpText() {
    return uR"(Tindra ser etter bonusplasser på reisene du overvåker, og sier fra når de dukker opp.

Bruk:
  tindra hunt [--once] [--json] [--demo]
  tindra sign-in [--demo]
  tindra --help | --version

hunt       Sjekker overvåkerne uten vindu: en runde med en gang, og så en for hvert intervall,
           til den avbrytes. Det som skjer underveis, skrives til standard feil.
  --once   Én runde, og så slutt.
  --json   Skriver resultatet av hver runde som ett JSON-objekt.
  --demo   Bruker et innebygd liksom-flyselskap, tre ferdige overvåkere og en egen datamappe.
           Dine egne data røres ikke.

sign-in    Åpner et vindu der du logger inn på EuroBonus. Når du er ferdig, bekreftes økten med et
           ekte oppslag.
  --demo   Logger inn hos liksom-flyselskapet (bruker demo@tindra.example, passord demo).

Sluttkode: 0 runden er ferdig (uten --once: jakten ble avbrutt), 1 Tindra kunne ikke starte,
2 feil bruk, 3 minst én overvåker feilet, 4 utlogget hos SAS, 5 runden ble avbrutt.

Miljø: TINDRA_SITE_ORIGIN, TINDRA_SITE_DOMAIN, TINDRA_IDP_HOST og TINDRA_IDP_DOMAIN peker Tindra
mot et annet nettsted enn SAS, for eksempel tindra-standin.
)"_s;
}
