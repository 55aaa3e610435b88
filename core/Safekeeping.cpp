// SPDX-License-Identifier: MIT
#include "core/Safekeeping.h"

#include "core/KeyValues.h"

using namespace Qt::StringLiterals;

std::optional<QString> Safekeeping::get(const Kept::Name& name) const {
    return m_values.get(name.key());
}

bool Safekeeping::isNoted(const Kept::Name& name) const {
    return get(name) == u"1"_s;
}

bool Safekeeping::note(const Kept::Name& name) {
    return set(name, u"1"_s);
}

bool Safekeeping::set(const Kept::Name& name, const QString& text) {
    return m_values.set(name.key(), text);
}

bool Safekeeping::set(std::initializer_list<std::pair<Kept::Name, QString>> texts) {
    return m_transaction([&] {
        for (const auto& [name, text] : texts)
            m_values.set(name.key(), text);
    });
}

bool Safekeeping::remove(const Kept::Name& name) {
    return m_values.remove(name.key());
}
