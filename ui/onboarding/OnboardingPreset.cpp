// SPDX-License-Identifier: MIT
#include "ui/onboarding/OnboardingPreset.h"

using namespace Qt::StringLiterals;

const QList<OnboardingPreset>& OnboardingPreset::all() {
    static const QList<OnboardingPreset> presets{
        {u"🇺🇸 USA i business"_s, u"USA i business"_s, u"OSL"_s,
         u"JFK,EWR,ORD,IAD,SFO,LAX,BOS,MIA"_s},
        {u"🌏 Asia i business"_s, u"Asia i business"_s, u"CPH"_s, u"BKK,HND,NRT,SIN,PVG"_s},
    };
    return presets;
}

Search Onboarding::watcher(const QString& name, const QString& origin, const QString& dests,
                           QDate today) {
    Search search;
    search.name = name;
    search.origin = origin;
    search.destination = dests;
    search.cabins = {Cabin::business};
    search.minSeats = 1;
    search.maxStops = 2;
    search.dateFrom = today.addDays(1);
    search.dateTo = today.addDays(60);
    search.returnDateFrom = search.dateFrom;
    search.returnDateTo = search.dateTo;
    search.includePartners = false;
    return search;
}
