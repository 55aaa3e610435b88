// SPDX-License-Identifier: MIT
#include "standin/Fields.h"

namespace standin {

QString queryItem(const HttpRequest& request, const char* name) {
    return request.query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

QString formField(const HttpRequest& request, const QByteArray& name) {
    for (const QByteArray& pair : request.body.split('&')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals < 0 || pair.first(equals) != name)
            continue;
        // Browsers send a space as "+".
        QByteArray value = pair.sliced(equals + 1);
        return QString::fromUtf8(QByteArray::fromPercentEncoding(value.replace('+', ' ')));
    }
    return {};
}

} // namespace standin
