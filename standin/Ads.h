// SPDX-License-Identifier: MIT
#pragma once

#include "standin/HttpServer.h"

namespace standin {

/// A third party in the airline's pages: a tracker script, a pixel that sets a cookie, and a frame
/// that tries to pass an invented answer off as the airline's. Its one flight is called XX1.
HttpResponse answerOfAds(const HttpRequest& request);

} // namespace standin
