// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The scripts that run in the airline's pages: text resources, each one function expression.
namespace PageScripts {

/// A resource of airline/scripts; it must exist.
QByteArray resource(const QString& name);

/// A call of the function in `name` with `arguments`, each already an expression of the script
/// language.
QString call(const QString& name, const QStringList& arguments);

/// The text as a double-quoted literal of the script language, whatever it contains.
QString jsString(const QString& text);

} // namespace PageScripts
