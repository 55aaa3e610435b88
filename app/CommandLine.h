// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/DataCommand.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the user asked for on the command line.
struct CommandLine {
    enum class Command { help, version, window, hunt, signIn, data, restore };

    Command command = Command::help;
    /// With Command::window: begin without showing it.
    bool hidden = false;
    /// One round instead of the loop.
    bool once = false;
    /// Results as JSON on standard output.
    bool json = false;
    /// With Command::hunt: the file that a picture of the window is saved in after each round;
    /// empty for none.
    QString picture{};
    /// The stand-in airline and a data folder of its own.
    bool demo = false;
    /// With Command::data only.
    std::optional<DataCommand> data{};
    /// With Command::restore only.
    Restore restore{};

    bool operator==(const CommandLine&) const = default;

    /// `arguments` without the program's name. Throws Err with one Norwegian line when they make
    /// no sense.
    static CommandLine parse(const QStringList& arguments);
    static QString helpText();

private:
    void parseWeb(const QString& name, const QStringList& words);
    void parseData(const QString& name, const QStringList& words);
};
