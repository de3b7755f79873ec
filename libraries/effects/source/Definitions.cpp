#include "Definitions.h"

#include "WordCharacter.h"

#include <algorithm>

namespace Tolen::Effects {

namespace {

constexpr std::uint32_t kNoChild = 0;

/// Names found in one line beyond which looking each one up costs more than trying all the rest.
constexpr int kMaxLookups = 16;

bool EndsWord(std::string_view line, std::size_t end) {
    return end == line.size() || !IsWordCharacter(line[end]);
}

/// Replaces one name in a line. @return false when the line would grow over @p maxBytes
bool Replace(std::string& line, const std::string& name, const std::string& value,
             std::size_t maxBytes) {
    // A match that doesn't count moves the search on by the length of the value; an empty one must
    // not hold it in place.
    const std::size_t skip = std::max<std::size_t>(value.size(), 1);
    std::string replaced;
    std::size_t copied = 0;
    for (std::size_t at = line.find(name); at != std::string::npos;) {
        const std::size_t end = at + name.size();
        if (!EndsWord(line, end)) {
            at = line.find(name, at + skip);
            continue;
        }
        replaced.append(line, copied, at - copied);
        replaced += value;
        copied = end;
        if (replaced.size() > maxBytes) {
            return false;
        }
        at = line.find(name, end);
    }
    if (copied != 0) {
        replaced.append(line, copied);
        line.swap(replaced);
    }
    return line.size() <= maxBytes;
}

} // namespace

Definitions::Definitions() : _tree(1) {}

void Definitions::Define(const std::string& name, const std::string& value) {
    const auto [entry, isNew] = _names.try_emplace(name);
    if (isNew) {
        _AddToTree(name, &entry->second);
    }
    entry->second.isDefined = true;
    entry->second.serials.insert(_next);
    _pairs.emplace(_next, Pair{name, value});
    ++_next;
}

bool Definitions::IsDefined(const std::string& name) const {
    const auto found = _names.find(name);
    return found != _names.end() && found->second.isDefined;
}

const std::string* Definitions::FindFirst(const std::string& name) const {
    const auto found = _names.find(name);
    if (found == _names.end() || found->second.serials.empty()) {
        return nullptr;
    }
    return &_pairs.at(*found->second.serials.begin()).value;
}

void Definitions::EraseFirst(const std::string& name) {
    const auto found = _names.find(name);
    if (found == _names.end() || found->second.serials.empty()) {
        return;
    }
    const auto first = found->second.serials.begin();
    _pairs.erase(*first);
    found->second.serials.erase(first);
    found->second.isDefined = false;
}

bool Definitions::Substitute(std::string& line, std::size_t maxBytes) const {
    if (_pairs.empty()) {
        return line.size() <= maxBytes;
    }
    Pairs::const_iterator pair = _FindNewest(line, _next);
    for (int lookups = 1; pair != _pairs.end(); ++lookups) {
        if (!pair->second.name.empty() &&
            !Replace(line, pair->second.name, pair->second.value, maxBytes)) {
            return false;
        }
        if (lookups < kMaxLookups) {
            pair = _FindNewest(line, pair->first);
        } else {
            pair = pair == _pairs.begin() ? _pairs.end() : std::prev(pair);
        }
    }
    return line.size() <= maxBytes;
}

void Definitions::_AddToTree(const std::string& text, const Name* name) {
    if (text.empty()) {
        return;
    }
    _isLastCharacter[static_cast<unsigned char>(text.back())] = true;
    std::uint32_t node = 0;
    for (auto c = text.rbegin(); c != text.rend(); ++c) {
        std::uint32_t child = _FindChild(node, *c);
        if (child == kNoChild) {
            child = static_cast<std::uint32_t>(_tree.size());
            _tree.emplace_back();
            _tree[node].children.emplace_back(*c, child);
        }
        node = child;
    }
    _tree[node].pName = name;
}

std::uint32_t Definitions::_FindChild(std::uint32_t node, char c) const {
    for (const auto& [character, child] : _tree[node].children) {
        if (character == c) {
            return child;
        }
    }
    return kNoChild;
}

/// The newest pair older than @p before whose name ends a word of @p line; the end for none.
Definitions::Pairs::const_iterator Definitions::_FindNewest(std::string_view line,
                                                            Serial before) const {
    Serial newest = 0;
    for (std::size_t end = 1; end <= line.size(); ++end) {
        if (!_isLastCharacter[static_cast<unsigned char>(line[end - 1])] || !EndsWord(line, end)) {
            continue;
        }
        std::uint32_t node = 0;
        for (std::size_t i = end; i > 0; --i) {
            node = _FindChild(node, line[i - 1]);
            if (node == kNoChild) {
                break;
            }
            const Name* name = _tree[node].pName;
            if (name == nullptr) {
                continue;
            }
            const auto above = name->serials.lower_bound(before);
            if (above != name->serials.begin()) {
                newest = std::max(newest, *std::prev(above));
            }
        }
    }
    return newest == 0 ? _pairs.end() : _pairs.find(newest);
}

} // namespace Tolen::Effects
