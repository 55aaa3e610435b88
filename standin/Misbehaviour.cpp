// SPDX-License-Identifier: MIT
#include "standin/Misbehaviour.h"

#include <algorithm>
#include <array>

namespace standin {
namespace {

using Kind = Misbehaviour::Kind;

struct Word {
    const char* name;
    Kind kind;
    const char* argument = ""; ///< its form
    int status = 0;
};

constexpr auto anyStatus = ":NNN[:TEXT]";
constexpr std::array vocabulary{Word{"none", Kind::None},
                                Word{"slow", Kind::Slow, "[:ms]"},
                                Word{"never", Kind::Never},
                                Word{"status500", Kind::Error},
                                Word{"malformed", Kind::Malformed},
                                Word{"huge", Kind::Huge},
                                Word{"cutoff", Kind::CutOff},
                                Word{"nested", Kind::Nested},
                                Word{"errors", Kind::Errors},
                                Word{"message", Kind::Message},
                                Word{"wrongshape", Kind::WrongShape},
                                Word{"status", Kind::Status, anyStatus},
                                Word{"unauthorized", Kind::Status, "", 401},
                                Word{"twice", Kind::Twice},
                                Word{"alternate", Kind::Alternate},
                                Word{"signin", Kind::SignIn},
                                Word{"page", Kind::PageStatus, anyStatus},
                                Word{"denied", Kind::Denied},
                                Word{"idp", Kind::Idp},
                                Word{"hang", Kind::Hang},
                                Word{"redirects", Kind::Redirects}};

bool readDelay(const QString& text, Misbehaviour& into) {
    bool ok = false;
    into.delay = std::chrono::milliseconds(text.toUInt(&ok));
    return ok;
}

// "429" or "429:TEXT".
bool readStatus(const QString& text, Misbehaviour& into) {
    const qsizetype colon = text.indexOf(u':');
    const QString digits = text.first(colon < 0 ? text.size() : colon);
    bool ok = false;
    into.status = int(digits.toUInt(&ok));
    if (colon >= 0)
        into.retryAfter = text.sliced(colon + 1);
    // A line break would begin another header.
    const auto isControl = [](QChar letter) { return letter < u' ' || letter == u'\x7f'; };
    return ok && digits.size() == 3 && into.status >= 200 && into.status <= 599 &&
           std::none_of(text.begin(), text.end(), isControl);
}

} // namespace

std::optional<Misbehaviour> Misbehaviour::of(const QString& text) {
    const qsizetype colon = text.indexOf(u':');
    const QString name = text.first(colon < 0 ? text.size() : colon);
    const auto word =
        std::find_if(vocabulary.begin(), vocabulary.end(),
                     [&name](const Word& known) { return name == QLatin1String(known.name); });
    if (word == vocabulary.end())
        return std::nullopt;
    Misbehaviour result{.kind = word->kind, .status = word->status};
    const QLatin1String form(word->argument);
    bool isRead = form.isEmpty() || form.startsWith(u'[');
    if (colon >= 0) {
        const QString argument = text.sliced(colon + 1);
        isRead = !form.isEmpty() && (word->kind == Kind::Slow ? readDelay(argument, result)
                                                              : readStatus(argument, result));
    }
    return isRead ? std::optional(result) : std::nullopt;
}

QStringList Misbehaviour::words() {
    QStringList result;
    for (const Word& word : vocabulary)
        result.append(QLatin1String(word.name) + QLatin1String(word.argument));
    return result;
}

} // namespace standin
