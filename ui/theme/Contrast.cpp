// SPDX-License-Identifier: MIT
#include "ui/theme/Contrast.h"

#include <cmath>

namespace {

constexpr double textContrast = 4.5;

double linear(float channel) {
    return channel <= 0.03928F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor over(const QColor& colour, const QColor& ground) {
    const float alpha = colour.alphaF();
    const auto mix = [alpha](float upper, float lower) {
        return upper * alpha + lower * (1 - alpha);
    };
    return QColor::fromRgbF(mix(colour.redF(), ground.redF()),
                            mix(colour.greenF(), ground.greenF()),
                            mix(colour.blueF(), ground.blueF()));
}

QColor readable(const QColor& colour, const QColor& ground) {
    const QColor end =
        contrast(Qt::white, ground) > contrast(Qt::black, ground) ? Qt::white : Qt::black;
    QColor result = QColor(colour.rgb());
    for (int step = 1; step <= 50 && contrast(QColor(result.rgb()), ground) < textContrast;
         ++step) {
        QColor mixed = end;
        mixed.setAlphaF(static_cast<float>(step) / 50.0F);
        result = over(mixed, QColor(colour.rgb()));
    }
    return QColor(result.rgb());
}
