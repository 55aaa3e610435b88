// SPDX-License-Identifier: MIT
#pragma once

#include "standin/HttpServer.h"
#include "standin/Misbehaviour.h"

#include <optional>

namespace standin {

/// The answer of an offer endpoint with its misbehaviour; `good` where that concerns the page only.
/// Twice and Alternate, which depend on what was asked before, are the caller's.
HttpResponse spoiltAnswer(HttpResponse good, const Misbehaviour& misbehaviour);

/// What comes instead of the search page; absent where the misbehaviour leaves the page as it is,
/// or where its form depends on the request (SignIn, Idp, Redirects).
std::optional<HttpResponse> spoiltPage(const Misbehaviour& misbehaviour);

} // namespace standin
