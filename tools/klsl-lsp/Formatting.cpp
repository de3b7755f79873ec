#include "Formatting.h"

#include "language/Format.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace Tolen::LanguageServer {

namespace {

/// The length of the whole lines that both texts begin with.
std::size_t CountCommonFront(std::string_view a, std::string_view b) {
    const auto difference = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
    const std::size_t lineEnd =
        a.substr(0, static_cast<std::size_t>(difference - a.begin())).rfind('\n');
    return lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
}

/// The length of the whole lines that both texts end with.
std::size_t CountCommonBack(std::string_view a, std::string_view b) {
    const auto difference = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend()).first;
    const auto common = static_cast<std::size_t>(difference - a.rbegin());
    const std::size_t lineEnd = a.find('\n', a.size() - common);
    return lineEnd == std::string_view::npos ? 0 : a.size() - lineEnd - 1;
}

} // namespace

Json MakeFormatting(const Source& source, const Positions& positions) {
    const std::string_view before = source.text.GetText();
    const std::string after = Language::Format(before);
    if (before == after) {
        return Json::array();
    }
    const std::size_t front = CountCommonFront(before, after);
    const std::string_view restOfAfter = std::string_view(after).substr(front);
    const std::size_t back = CountCommonBack(before.substr(front), restOfAfter);
    const std::string_view text = restOfAfter.substr(0, restOfAfter.size() - back);
    return Json::array({{{"range", positions.MakeRange(source.text, {front, before.size() - back})},
                         {"newText", text}}});
}

} // namespace Tolen::LanguageServer
