// SPDX-License-Identifier: MIT
// The search page of both flows: reads its leg from the address, asks for the offers and lists them.
"use strict";
(() => {
  const { delay, ads } = document.documentElement.dataset;
  const query = new URLSearchParams(location.search);
  const isAward = location.pathname.startsWith("/booking/award/");

  function readLeg() {
    if (isAward) {
      return { from: query.get("origin"), to: query.get("destination"), date: query.get("outboundDate") };
    }
    const [, from, to, day] = /^OW_(\w{3})-(\w{3})-(\d{8})/.exec(query.get("search"));
    return { from, to, date: day.replace(/(\d{4})(\d{2})(\d{2})/, "$1-$2-$3") };
  }

  function dayFrom(date, days) {
    const day = new Date(date + "T12:00:00Z");
    day.setUTCDate(day.getUTCDate() + days);
    return day.toISOString().slice(0, 10);
  }

  function address(date, more) {
    const items = isAward
      ? { origin: leg.from, destination: leg.to, outboundDate: date, adults: 1 }
      : { from: leg.from, to: leg.to, outDate: date, adt: 1, bookingFlow: "points", market: "no-no" };
    const path = isAward ? "/award-api/flights?" : "/api/offers/flights?";
    return path + new URLSearchParams({ ...items, ...more });
  }

  function failure(status) {
    return Object.assign(new Error(`status ${status}`), { status });
  }

  function askByXhr(url) {
    return new Promise((resolve, reject) => {
      const request = new XMLHttpRequest();
      request.open("GET", url);
      request.onload = () =>
        request.status === 200 ? resolve(JSON.parse(request.responseText)) : reject(failure(request.status));
      request.onerror = () => reject(new Error("network"));
      request.send();
    });
  }

  async function askByFetch(url) {
    const response = await fetch(url);
    if (!response.ok) throw failure(response.status);
    return response.json();
  }

  // Once more after a server's error, which may have passed.
  async function ask(url) {
    const askOnce = isAward ? askByXhr : askByFetch;
    try {
      return await askOnce(url);
    } catch (error) {
      if (!(error.status >= 500)) throw error;
      await new Promise((resolve) => setTimeout(resolve, 300));
      return askOnce(url);
    }
  }

  // The strip with the prices of other days. Its answers are not needed for the list.
  function askForDay(days) {
    const url = address(dayFrom(leg.date, days), { calendar: 1 });
    (isAward ? askByXhr(url) : fetch(new Request(url))).catch(() => {});
  }

  function seatsOf(flight) {
    const seats = [];
    if (isAward) {
      for (const cabin of flight.cabins) {
        if (cabin.availableSeats > 0) seats.push(`${cabin.cabin} ${cabin.availableSeats}`);
      }
      return seats;
    }
    for (const [name, families] of Object.entries(flight.cabins)) {
      for (const { products } of Object.values(families)) {
        for (const product of Object.values(products)) {
          const free = Math.max(...product.fares.map((fare) => fare.avlSeats));
          if (/bonus/i.test(product.productName) && free > 0) seats.push(`${name} ${free}`);
        }
      }
    }
    return seats;
  }

  function show(answer) {
    const flights = Object.values(answer.outboundFlights);
    for (const flight of flights) {
      const line = document.createElement("li");
      const numbers = flight.segments.map((part) => part.marketingCarrier.code + part.flightNumber).join(", ");
      const start = flight.startDateTimeInLocal ?? flight.startTimeInLocal;
      line.textContent = `${start.slice(11, 16)} ${numbers}: ${seatsOf(flight).join(", ") || "ingen bonusplasser"}`;
      document.getElementById("flights").append(line);
    }
    document.getElementById("status").textContent = `${flights.length} reiser`;
    document.title = `${flights.length} reiser ${leg.from}–${leg.to} ${leg.date}`;
  }

  function showAdvert() {
    const frame = document.createElement("iframe");
    frame.src = `${ads}/frame.html?` + new URLSearchParams({ ...leg, award: isAward ? 1 : 0 });
    frame.width = 300;
    frame.height = 100;
    document.getElementById("advert").append(frame);
  }

  async function search() {
    try {
      show(await ask(address(leg.date, {})));
    } catch {
      document.getElementById("status").textContent = "Noe gikk galt. Prøv igjen senere.";
    }
    askForDay(-2);
    askForDay(2);
  }

  const leg = readLeg();
  document.getElementById("title").textContent = `${leg.from}–${leg.to} ${leg.date}`;
  showAdvert();
  askForDay(-1);
  askForDay(3);
  if (Number(delay) > 0) setTimeout(search, Number(delay));
  else search();
})();
