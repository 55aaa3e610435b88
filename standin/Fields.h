// SPDX-License-Identifier: MIT
#pragma once

#include "standin/HttpServer.h"

namespace standin {

/// One item of the address's query, decoded; empty when it is not there.
QString queryItem(const HttpRequest& request, const char* name);

/// One field of a submitted form, decoded; empty when it is not there.
QString formField(const HttpRequest& request, const QByteArray& name);

} // namespace standin
