// SPDX-License-Identifier: MIT
#include "app/Redaction.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestLine = 400;
/// Patterns on more than this would take long; nothing of Tindra's own writes as much.
constexpr qsizetype longestRead = 4000;

struct Rule {
    QRegularExpression pattern;
    QString replacement;
};

QRegularExpression pattern(const QString& text) {
    return QRegularExpression(text, QRegularExpression::CaseInsensitiveOption |
                                        QRegularExpression::UseUnicodePropertiesOption);
}

/// In this order: what a rule leaves, the next ones read.
const QList<Rule>& rules() {
    static const QList<Rule> all{
        // The rest of a line that a header begins.
        {pattern(
             u"\\b((?:proxy-)?authorization|(?:set-)?cookie2?|x-[\\w-]*|bearer)\\b\\s*[: ]\\s*.+$"_s),
         u"\\1: …"_s},
        {pattern(u"/(?:home|Users|root)\\b(?:/[^/\\s\"']+)?"_s), u"~"_s},
        {pattern(u"([a-z][a-z0-9+.-]*://)(?:[^\\s/?#]*@)?([^\\s?#\"'<>]*)(?:[?#][^\\s\"'<>]*)?"_s),
         u"\\1\\2"_s},
        {pattern(u"[^\\s@<>\"'=:;,(]+(?:@|%40)[^\\s@<>\"',;)]+"_s), u"(e-post)"_s},
        {pattern(u"(\"[^\"]*\"\\s*:\\s*)(?:\"(?:[^\"\\\\]|\\\\.)*\"?|[^\\s,}]+)"_s), u"\\1…"_s},
        {pattern(u"(pass\\w*|pin|token|kode|code|secret|hemmelig\\w*)(\\s*:\\s*)\\S+"_s),
         u"\\1\\2…"_s},
        // Short numbers, such as "id=7", tell nothing.
        {pattern(u"([\\w.\\[\\]-]+=)(?!\\d{1,6}(?:\\W|$))(?:\"[^\"]*\"?|[^\\s&;,)]+)"_s),
         u"\\1…"_s},
        {pattern(u"\\beyJ[\\w-]+(?:\\.[\\w-]*)*"_s), u"…"_s},
        {pattern(u"\\b[0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}\\b"_s), u"…"_s},
        {pattern(u"(?<![\\w+-])(?!tindra-)(?=[\\w+-]*\\d)(?=[\\w+-]*[a-z])[\\w+=-]{16,}"_s),
         u"…"_s},
        // Routes: as watchers are logged, and pairs of codes anywhere.
        {pattern(u"(addSearch OK: ).*( id=)"_s), u"\\1(rute)\\2"_s},
        {pattern(u"\\([^()]*(?:->|→)[^()]*\\)"_s), u"((rute))"_s},
        {pattern(
             u"(?<![a-z])[a-z]{3}(?:\\s*,\\s*[a-z]{3})*\\s*(?:->|→)\\s*[a-z]{3}(?:\\s*,\\s*[a-z]{3})*(?![a-z])"_s),
         u"(rute)"_s},
        {QRegularExpression(u"(?<![A-Za-z])[A-Z]{3}\\s*[-–⇄]\\s*[A-Z]{3}(?![A-Za-z])"_s),
         u"(rute)"_s},
        {pattern(u"\\d{7,}"_s), u"…"_s},
    };
    return all;
}

QString withoutWords(QString text, const Redaction::Secrets& secrets) {
    if (secrets.homeFolder.size() > 1)
        text.replace(secrets.homeFolder, u"~"_s);
    QStringList words = secrets.words;
    words.append(secrets.userName);
    // A name that begins with another's is found first.
    std::sort(words.begin(), words.end(),
              [](const QString& a, const QString& b) { return a.size() > b.size(); });
    for (const QString& word : std::as_const(words)) {
        if (word.trimmed().size() > 1)
            text.replace(
                pattern(u"(?<!\\w)%1(?!\\w)"_s.arg(QRegularExpression::escape(word.trimmed()))),
                u"…"_s);
    }
    return text;
}

} // namespace

namespace Redaction {

QString line(const QString& text, const Secrets& secrets) {
    QString rest = text.left(longestRead);
    rest.removeIf([](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Other_Format;
    });
    static const QRegularExpression time(u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ "_s);
    const QString start = time.match(rest).captured();
    rest = withoutWords(rest.sliced(start.size()), secrets);
    for (const Rule& rule : rules())
        rest.replace(rule.pattern, rule.replacement);
    return rest.size() > longestLine ? start + rest.left(longestLine) + u'…' : start + rest;
}

} // namespace Redaction
