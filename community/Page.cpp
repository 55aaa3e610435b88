// SPDX-License-Identifier: MIT
#include "community/Page.h"

#include <algorithm>
#include <string_view>

namespace community {

namespace {

constexpr std::string_view opening = R"({"hits":[)";
constexpr std::string_view closing = "]}";
constexpr std::string_view closingWithMore = R"(],"more":true})";

struct Piece {
    std::string_view json;
    Time reported;
};

PagePtr written(const std::vector<Piece>& pieces, std::size_t mostBytes, bool hasMore) {
    std::size_t bytes = opening.size() + closingWithMore.size();
    std::size_t count = 0;
    while (count < pieces.size() && bytes + pieces[count].json.size() + 1 <= mostBytes)
        bytes += pieces[count++].json.size() + 1;
    auto page = std::make_shared<Page>();
    page->json.reserve(bytes);
    page->finds.reserve(count);
    page->json = opening;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0)
            page->json += ',';
        page->finds.push_back({pieces[i].reported, std::uint32_t(page->json.size()),
                               std::uint32_t(pieces[i].json.size())});
        page->json += pieces[i].json;
    }
    page->hasMore = hasMore || count < pieces.size();
    page->json += page->hasMore ? closingWithMore : closing;
    return page;
}

} // namespace

PagePtr pageOf(const std::vector<StoredFind>& finds, std::size_t mostBytes) {
    std::vector<Piece> pieces;
    pieces.reserve(finds.size());
    for (const StoredFind& find : finds)
        pieces.push_back({find.json, find.reported});
    return written(pieces, mostBytes, finds.size() >= Store::mostOfRoute);
}

PagePtr merged(const std::vector<PagePtr>& pages, std::size_t mostBytes) {
    std::vector<Piece> pieces;
    const bool hasMore =
        std::any_of(pages.begin(), pages.end(), [](const PagePtr& page) { return page->hasMore; });
    for (const PagePtr& page : pages)
        for (const Page::Entry& find : page->finds)
            pieces.push_back(
                {std::string_view(page->json).substr(find.begin, find.size), find.reported});
    std::stable_sort(pieces.begin(), pieces.end(),
                     [](const Piece& a, const Piece& b) { return a.reported > b.reported; });
    return written(pieces, mostBytes, hasMore);
}

} // namespace community
