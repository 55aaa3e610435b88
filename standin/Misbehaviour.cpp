// SPDX-License-Identifier: MIT
#include "standin/Misbehaviour.h"

#include <array>
#include <utility>

namespace standin {
namespace {

using Kind = Misbehaviour::Kind;

constexpr std::array kinds{
    std::pair{"none", Kind::None},           std::pair{"slow", Kind::Slow},
    std::pair{"never", Kind::Never},         std::pair{"status500", Kind::Error},
    std::pair{"malformed", Kind::Malformed}, std::pair{"huge", Kind::Huge},
    std::pair{"cutoff", Kind::CutOff},       std::pair{"nested", Kind::Nested},
    std::pair{"signin", Kind::SignIn}};

} // namespace

std::optional<Misbehaviour> Misbehaviour::of(const QString& text) {
    const qsizetype colon = text.indexOf(u':');
    const QString word = colon < 0 ? text : text.first(colon);
    for (const auto& [name, kind] : kinds) {
        if (word != QLatin1String(name))
            continue;
        Misbehaviour result{.kind = kind};
        if (colon >= 0) {
            bool ok = false;
            result.delay = std::chrono::milliseconds(text.sliced(colon + 1).toUInt(&ok));
            if (!ok || kind != Kind::Slow)
                return std::nullopt;
        }
        return result;
    }
    return std::nullopt;
}

QStringList Misbehaviour::words() {
    QStringList result;
    for (const auto& entry : kinds)
        result.append(QLatin1String(entry.first));
    return result;
}

} // namespace standin
