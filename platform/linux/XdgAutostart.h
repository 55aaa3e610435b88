// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Autostart.h"

/// An entry in `$XDG_CONFIG_HOME/autostart`, after the Desktop Application Autostart Specification.
///
/// Inside Flatpak no desktop looks there: it takes the background portal, which is not used yet, so
/// setOn() refuses.
class XdgAutostart final : public Autostart {
public:
    /// The entry starts `program`, an absolute path.
    explicit XdgAutostart(QString program);

    /// False also when the desktop's own settings have switched the entry off.
    bool isOn() const override;
    std::optional<QString> setOn(bool on) override;

private:
    QString m_program;
    QString m_file;
};
