// SPDX-License-Identifier: MIT
#include "core/Settings.h"

#include "core/KeyValues.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

double cut(const Setting::Number& setting, double value) {
    return std::clamp(std::isfinite(value) ? value : setting.usual, setting.least, setting.most);
}

} // namespace

bool Settings::isOn(const Setting::Switch& setting) const {
    const auto value = m_values.get(setting.key);
    return value ? *value == u'1' : setting.usual;
}

double Settings::number(const Setting::Number& setting, double otherwise) const {
    bool isNumber = false;
    const double value = m_values.get(setting.key).value_or(QString()).toDouble(&isNumber);
    return cut(setting, isNumber && std::isfinite(value) ? value : otherwise);
}

std::optional<QString> Settings::text(const Setting::Text& setting) const {
    return m_values.get(setting.key);
}

bool Settings::set(const Setting::Switch& setting, bool on) {
    return store(setting.key, on ? u"1"_s : u"0"_s);
}

bool Settings::set(const Setting::Number& setting, double value) {
    const QString text = QString::number(cut(setting, value), 'f', QLocale::FloatingPointShortest);
    return store(setting.key, text.contains(u'.') ? text : text + u".0"_s);
}

bool Settings::set(const Setting::Text& setting, const QString& text) {
    return store(setting.key, text);
}

bool Settings::store(QLatin1StringView key, const QString& value) {
    if (!m_values.set(key, value))
        return false;
    Q_EMIT changed(key);
    return true;
}
