// SPDX-License-Identifier: MIT
#include "airline/PageScripts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace PageScripts {

QByteArray resource(const QString& name) {
    QFile file(u":/airline/"_s + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the page script %s is not compiled in", qPrintable(name));
    return file.readAll();
}

QString call(const QString& name, const QStringList& arguments) {
    return QString::fromUtf8(resource(name)).trimmed() + u'(' + arguments.join(u", "_s) + u");"_s;
}

QString jsString(const QString& text) {
    const QString list =
        QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
    return list.mid(1, list.size() - 2);
}

} // namespace PageScripts
