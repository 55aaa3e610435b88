// SPDX-License-Identifier: MIT
#include "ui/theme/Palette.h"

const Palette& Palette::light() {
    static const Palette palette{
        .window = 0xF5F2EC,
        .card = 0xFFFFFF,
        .panel = 0x14304A,
        .panelText = 0xF5F2EC,
        .brand = 0x17406B,
        .accent = 0x2C6BB3,
        .success = 0x177343,
        .successBg = 0xDFF3E6,
        .danger = 0xC23A2B,
        .warn = 0x9A5B00,
        .peach = 0xF3C48A,
        .text = 0x1C1F24,
        .textSecondary = 0x5B626C,
        .textTertiary = 0x666D77,
        .hairline = 0xE4DFD5,
        .field = 0xFAF8F4,
        .sidebar = 0xF2EEE7,
        .raised = 0x14304A,
        .onBrand = 0xFFFFFF,
        .onAccent = 0xFFFFFF,
    };
    return palette;
}

const Palette& Palette::dark() {
    static const Palette palette{
        .window = 0x15181D,
        .card = 0x1F242B,
        .panel = 0x0E2135,
        .panelText = 0xF5F2EC,
        .brand = 0x8DB8E8,
        .accent = 0x6FA8F0,
        .success = 0x57C78A,
        .successBg = 0x173527,
        .danger = 0xF08070,
        .warn = 0xE9B25E,
        .peach = 0xF3C48A,
        .text = 0xF1F3F5,
        .textSecondary = 0xA7AFBA,
        .textTertiary = 0x8A929D,
        .hairline = 0x2C333C,
        .field = 0x181C22,
        .sidebar = 0x191D24,
        .raised = 0x2A313A,
        .onBrand = 0x10202F,
        .onAccent = 0x10202F,
    };
    return palette;
}
