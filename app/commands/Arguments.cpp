// SPDX-License-Identifier: MIT
#include "app/commands/Arguments.h"

#include "core/Err.h"

using namespace Qt::StringLiterals;

namespace {

const QString hint = u" «tindra --help» viser bruken."_s;

} // namespace

Arguments::Arguments(const QString& command, const QStringList& words, const QStringList& flags,
                     const QStringList& valued)
    : m_command(command) {
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (word == u"--") {
            m_words.append(words.sliced(i + 1));
            break;
        }
        if (!word.startsWith(u'-')) {
            m_words.append(word);
            continue;
        }
        const QString name = word.section(u'=', 0, 0);
        const bool isJoined = word.contains(u'=');
        const bool takesValue = valued.contains(name);
        if (!takesValue && (isJoined || !flags.contains(name)))
            throw Err{u"Ukjent valg «%1» for «%2»."_s.arg(word.simplified(), m_command) + hint};
        if (m_options.contains(name))
            throw Err{u"«%1» står to ganger."_s.arg(name) + hint};
        QString value = isJoined ? word.section(u'=', 1) : QString();
        if (takesValue && !isJoined && i + 1 < words.size())
            value = words[++i];
        if (takesValue && (value.isEmpty() || (!isJoined && value.startsWith(u"--"))))
            throw Err{u"«%1» mangler verdi."_s.arg(name) + hint};
        m_options.insert(name, value);
    }
}

std::optional<QString> Arguments::value(const QString& option) const {
    const auto found = m_options.find(option);
    return found == m_options.end() ? std::nullopt : std::optional(*found);
}

QString Arguments::required(const QString& option) const {
    if (const auto given = value(option))
        return *given;
    throw Err{u"«%1» trenger «%2»."_s.arg(m_command, option) + hint};
}

QString Arguments::word(const QString& what) const {
    if (m_words.size() == 1 && !m_words.first().isEmpty())
        return m_words.first();
    throw Err{u"«%1» trenger %2, og ikke noe annet."_s.arg(m_command, what) + hint};
}

void Arguments::noWords() const {
    if (!m_words.isEmpty())
        throw Err{u"«%1» forstår ikke «%2»."_s.arg(m_command, m_words.first().simplified()) + hint};
}

int Arguments::number(const QString& option, int least, int most, int otherwise) const {
    const auto given = value(option);
    if (!given)
        return otherwise;
    bool isNumber = false;
    const int number = given->toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw Err{u"«%1 %2»: skriv et tall fra %3 til %4."_s.arg(option, given->simplified())
                      .arg(least)
                      .arg(most) +
                  hint};
    return number;
}
