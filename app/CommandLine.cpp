// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "app/commands/Arguments.h"
#include "core/Err.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QStringList dataCommands{u"watchers"_s, u"hits"_s, u"backup"_s, u"restore"_s};

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments) {
    CommandLine line;
    const QStringList windowFlags{u"--demo"_s, u"--hidden"_s};
    const bool isWindow =
        std::all_of(arguments.begin(), arguments.end(),
                    [&windowFlags](const QString& word) { return windowFlags.contains(word); });
    if (isWindow) {
        line.command = Command::window;
        line.demo = arguments.contains(u"--demo"_s);
        line.hidden = arguments.contains(u"--hidden"_s);
        return line;
    }
    const QString& first = arguments.first();
    if (first == u"--version" || first == u"--help" || first == u"-h") {
        if (arguments.size() > 1)
            throw Err{u"«%1» står alene. «tindra --help» viser bruken."_s.arg(first)};
        line.command = first == u"--version" ? Command::version : Command::help;
        return line;
    }
    const QStringList words = arguments.sliced(1);
    const bool wantsHelp = words.contains(u"--help"_s) || words.contains(u"-h"_s);
    line.demo = words.contains(u"--demo"_s);
    if (first == u"hunt" || first == u"sign-in")
        line.parseWeb(first, words);
    else if (!dataCommands.contains(first))
        throw Err{
            u"Ukjent kommando «%1». «tindra --help» viser kommandoene."_s.arg(first.simplified())};
    else if (!wantsHelp)
        line.parseData(first, words);
    if (wantsHelp)
        line.command = Command::help;
    return line;
}

/// The commands that look things up at the airline.
void CommandLine::parseWeb(const QString& name, const QStringList& words) {
    command = name == u"hunt" ? Command::hunt : Command::signIn;
    QStringList flags{u"--demo"_s, u"--help"_s, u"-h"_s};
    QStringList valued;
    if (command == Command::hunt) {
        flags += {u"--once"_s, u"--json"_s};
        valued = {u"--picture"_s};
    }
    const Arguments options(u"tindra "_s + name, words, flags, valued);
    options.noWords();
    once = options.has(u"--once"_s);
    json = options.has(u"--json"_s);
    picture = options.value(u"--picture"_s).value_or(QString());
}

void CommandLine::parseData(const QString& name, const QStringList& words) {
    command = Command::data;
    if (name == u"restore") {
        command = Command::restore;
        restore = Restore::parse(words);
    } else if (name == u"watchers") {
        data = std::visit([](const auto& one) { return DataCommand(one); }, parseWatchers(words));
    } else if (name == u"hits") {
        data = ListHits::parse(words);
    } else {
        data = BackUp::parse(words);
    }
}

QString CommandLine::helpText() {
    return uR"(Tindra ser etter bonusplasser på reisene du overvåker, og sier fra når de dukker opp.

Bruk:
  tindra [--hidden] [--demo]
  tindra hunt [--once] [--json] [--picture FIL] [--demo]
  tindra sign-in [--demo]
  tindra watchers list [--json] [--demo]
  tindra watchers add --from OSL --to EWR,JFK --out 2027-03-01..2027-03-31 [flere valg]
  tindra watchers pause|resume|remove NUMMER
  tindra hits [--json|--csv] [--watcher NUMMER] [--all]
  tindra backup FIL
  tindra restore FIL
  tindra --help | --version

Uten kommando åpner Tindra vinduet sitt og jakter. Kjører den alt, kommer vinduet frem.
  --hidden Uten å vise vinduet; det åpnes fra systemstatusfeltet.
  --demo   Bruker et innebygd liksom-flyselskap, tre ferdige overvåkere og en egen datamappe.
           Dine egne data røres ikke.

hunt       Sjekker overvåkerne uten vindu: en runde med en gang, og så en for hvert intervall,
           til den avbrytes. Det som skjer underveis, skrives til standard feil.
  --once   Én runde, og så slutt.
  --json   Skriver resultatet av hver runde som ett JSON-objekt.
  --picture FIL  Lagrer etter hver runde et bilde (PNG) av vinduet med treffene.

sign-in    Åpner et vindu der du logger inn på EuroBonus. Når du er ferdig, bekreftes økten med et
           ekte oppslag.
  --demo   Logger inn hos liksom-flyselskapet (bruker demo@tindra.example, passord demo).

watchers   Overvåkerne: viser dem, lager en, setter en på pause, setter den i gang igjen, eller
           fjerner den med treffene sine. Trenger verken skjerm eller innlogging. En Tindra som
           kjører, får det med seg.
  list     Én linje for hver; med --json en liste for andre programmer.
  add      Lager en overvåker:
    --from KODER       Avreisesteder, for eksempel OSL,BGO.
    --to KODER         Reisemål, for eksempel EWR,JFK.
    --out DATOER       Utreise: 2027-03-01, eller 2027-03-01..2027-03-31.
    --back DATOER      Hjemreise på samme måte; uten den er det en enveisreise.
    --cabins KABINER   Blant economy, premeco, business og first; business når ikke annet er sagt.
    --seats TALL       Så mange seter må det minst være (1 til 9).
    --stops TALL       Høyst så mange stopp (0 til 3).
    --partners         Også fly hos partnerselskaper.
    --name TEKST       Navnet den får i listene.

hits       Treffene som fortsatt kan reises, de nyeste først.
  --json, --csv        Som JSON-liste, eller som tabell for regneark.
  --watcher NUMMER     Bare treffene til denne overvåkeren.
  --all                Også det som er utsolgt.

backup     Lagrer overvåkere, treff og innstillinger i en fil. Innlogging og passord er aldri med.
restore    Henter dem inn fra en slik fil, som sjekkes først. Det som var der, blir liggende i
           datamappen under et eget navn. Tindra må være avsluttet.

Alle kommandoene tar --demo, og gjelder da demoens egen datamappe.

Sluttkode: 0 det gikk bra (hunt uten --once: jakten ble avbrutt), 1 Tindra kunne ikke gjøre det,
2 feil bruk, 3 minst én overvåker feilet, 4 utlogget hos SAS, 5 runden ble avbrutt, 6 SAS ber oss
vente.

Miljø: TINDRA_SITE_ORIGIN, TINDRA_SITE_DOMAIN, TINDRA_IDP_HOST og TINDRA_IDP_DOMAIN peker Tindra
mot et annet nettsted enn SAS, for eksempel tindra-standin.
)"_s;
}
