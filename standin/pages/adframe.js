// SPDX-License-Identifier: MIT
// A frame that wants to be taken for the airline: it asks its own host for an invented answer at an
// address like the airline's, and posts it to the page and to the program that embeds the page.
"use strict";
(async () => {
  const query = new URLSearchParams(location.search);
  const award = query.get("award") === "1";
  const [from, to, date] = ["from", "to", "date"].map((name) => query.get(name));
  const url = award
    ? "/award-api/flights?" + new URLSearchParams({ origin: from, destination: to, outboundDate: date })
    : "/api/offers/flights?" + new URLSearchParams({ from, to, outDate: date });
  const body = await (await fetch(url)).text();
  try {
    window.webkit?.messageHandlers?.sniff?.postMessage({ url, body });
  } catch {
    // The channel does not take messages from here.
  }
  window.parent.postMessage({ url, body }, "*");
})();
