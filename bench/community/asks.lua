-- SPDX-License-Identifier: MIT
-- For wrk: asks for ten random routes of 5,070, so that few are ready.
local letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"

local function letter(most)
    local at = math.random(most)
    return letters:sub(at, at)
end

function request()
    local routes = {}
    for i = 1, 10 do
        routes[i] = "OS" .. letter(26) .. "-B" .. letter(15) .. letter(13)
    end
    return wrk.format("GET", "/v1/hits?routes=" .. table.concat(routes, ","))
end
