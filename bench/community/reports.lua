-- SPDX-License-Identifier: MIT
-- For wrk: reports one find a request, of 676 routes and ever other flights.
local letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
local date = os.date("!%Y-%m-%d", os.time() + 30 * 86400)
local threads = 0
local count = 0

function setup(thread)
    thread:set("id", threads)
    threads = threads + 1
end

local function find(route, flight)
    return string.format(
        '{"key":"%s-%s-%s","cabin":"business","route":"%s","fromCity":"Oslo","toCity":"Bangkok",'
            .. '"depart":"14.03 09:05","arrive":"15.03 06:10","stopsText":"1 stopp (CPH)",'
            .. '"flight":"%s","durationMin":725,"seats":2,"points":75000,"travelDate":"%s",'
            .. '"bookingUrl":"https://www.example.org/book/flights?search=OB_OSL-BKK-20270301_a1",'
            .. '"foundAt":%d.5}',
        date, route, flight, route, flight, date, os.time())
end

function request()
    count = count + 1
    local first = count % 26 + 1
    local second = math.floor(count / 26) % 26 + 1
    local route = "OS" .. letters:sub(first, first) .. "-BK" .. letters:sub(second, second)
    local body = '{"hits":[' .. find(route, "SK" .. id .. count) .. "]}"
    return wrk.format("POST", "/v1/hits", { ["Content-Type"] = "application/json" }, body)
end
