// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/address.hpp>

#include <cstdint>
#include <string_view>
#include <vector>

namespace community {

/// Who sent a request, as far as that is told apart: an IPv4 address, or the first 64 bits of an
/// IPv6 one. Behind a trusted proxy it is the last address of X-Forwarded-For that is no trusted
/// proxy itself; what stands before it was written by strangers.
std::uint64_t senderOf(const boost::asio::ip::address& peer, std::string_view forwardedFor,
                       const std::vector<boost::asio::ip::address>& trustedProxies);

} // namespace community
