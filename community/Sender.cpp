// SPDX-License-Identifier: MIT
#include "community/Sender.h"

#include <algorithm>
#include <string>

namespace community {

namespace {

using boost::asio::ip::address;

// IPv4 comes in IPv6's clothes when one socket listens for both.
address plain(const address& any) {
    return any.is_v6() && any.to_v6().is_v4_mapped()
               ? make_address_v4(boost::asio::ip::v4_mapped, any.to_v6())
               : any;
}

std::uint64_t prefixOf(const address& any) {
    if (any.is_v4())
        return any.to_v4().to_uint();
    const auto bytes = any.to_v6().to_bytes();
    std::uint64_t prefix = 0;
    for (int i = 0; i < 8; ++i)
        prefix = prefix << 8 | bytes[std::size_t(i)];
    return prefix;
}

} // namespace

std::uint64_t senderOf(const address& peer, std::string_view forwardedFor,
                       const std::vector<address>& trustedProxies) {
    const auto isTrusted = [&](const address& hop) {
        return std::find(trustedProxies.begin(), trustedProxies.end(), hop) != trustedProxies.end();
    };
    address sender = plain(peer);
    while (!forwardedFor.empty() && isTrusted(sender)) {
        const std::size_t comma = forwardedFor.rfind(',');
        std::string_view hop = forwardedFor.substr(comma + 1); // npos + 1 is 0
        forwardedFor = comma == std::string_view::npos ? "" : forwardedFor.substr(0, comma);
        while (hop.starts_with(' '))
            hop.remove_prefix(1);
        while (hop.ends_with(' '))
            hop.remove_suffix(1);
        boost::system::error_code error;
        const address next = boost::asio::ip::make_address(hop, error);
        if (error)
            break;
        sender = plain(next);
    }
    return prefixOf(sender);
}

} // namespace community
