#include "scene/JsonNode.h"

#include "language/Suggestion.h"
#include "scene/SceneError.h"

#include <algorithm>
#include <cmath>

namespace Tolen::Scene {

namespace {

const char* _DescribeKind(const nlohmann::json& value) {
    switch (value.type()) {
    case nlohmann::json::value_t::object:
        return "an object";
    case nlohmann::json::value_t::array:
        return "a list";
    case nlohmann::json::value_t::string:
        return "a text";
    case nlohmann::json::value_t::boolean:
        return "true or false";
    case nlohmann::json::value_t::null:
        return "null";
    default:
        return "a number";
    }
}

/// A key as JSON pointers write it.
std::string _Escape(const std::string& key) {
    std::string escaped;
    for (const char c : key) {
        escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return escaped;
}

} // namespace

std::string SuggestName(const std::string& name, const std::vector<std::string>& known) {
    const std::string meant = Language::Suggest(name, known);
    return meant.empty() ? "" : " (did you mean '" + meant + "'?)";
}

void JsonNode::Fail(const std::string& message) const {
    throw SceneError(_place.empty() ? "/" : _place, message);
}

bool JsonNode::Has(const char* key) const {
    return _pValue->is_object() && _pValue->find(key) != _pValue->end();
}

JsonNode JsonNode::Get(const std::string& key) const {
    if (!_pValue->is_object()) {
        Fail(std::string("expected an object, found ") + _DescribeKind(*_pValue));
    }
    const auto found = _pValue->find(key);
    if (found == _pValue->end()) {
        Fail("'" + key + "' is missing");
    }
    return {*found, _place + "/" + _Escape(key)};
}

std::vector<JsonNode> JsonNode::GetElements() const {
    if (!_pValue->is_array()) {
        Fail(std::string("expected a list, found ") + _DescribeKind(*_pValue));
    }
    std::vector<JsonNode> elements;
    for (const nlohmann::json& element : *_pValue) {
        elements.emplace_back(element, _place + "/" + std::to_string(elements.size()));
    }
    return elements;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::GetMembers() const {
    if (!_pValue->is_object()) {
        Fail(std::string("expected an object, found ") + _DescribeKind(*_pValue));
    }
    std::vector<std::pair<std::string, JsonNode>> members;
    for (const auto& [key, value] : _pValue->items()) {
        members.emplace_back(key, JsonNode(value, _place + "/" + _Escape(key)));
    }
    return members;
}

void JsonNode::AllowOnly(std::initializer_list<const char*> keys) const {
    const std::vector<std::string> known(keys.begin(), keys.end());
    for (const auto& [key, member] : GetMembers()) {
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            member.Fail("unknown key" + SuggestName(key, known));
        }
    }
}

std::string JsonNode::AsString() const {
    if (!_pValue->is_string()) {
        Fail(std::string("expected a text, found ") + _DescribeKind(*_pValue));
    }
    return _pValue->get<std::string>();
}

double JsonNode::AsNumber() const {
    if (!_pValue->is_number()) {
        Fail(std::string("expected a number, found ") + _DescribeKind(*_pValue));
    }
    return _pValue->get<double>();
}

bool JsonNode::AsBool() const {
    if (!_pValue->is_boolean()) {
        Fail(std::string("expected true or false, found ") + _DescribeKind(*_pValue));
    }
    return _pValue->get<bool>();
}

int JsonNode::AsInt(int least, int most) const {
    const double number = AsNumber();
    if (!(number >= least && number <= most) || number != std::floor(number)) {
        Fail("expected a whole number from " + std::to_string(least) + " to " +
             std::to_string(most));
    }
    return static_cast<int>(number);
}

std::vector<double> JsonNode::AsNumbers() const {
    if (_pValue->is_number()) {
        return {_pValue->get<double>()};
    }
    std::vector<double> numbers;
    for (const JsonNode& element : GetElements()) {
        numbers.push_back(element.AsNumber());
    }
    return numbers;
}

std::vector<double> JsonNode::AsNumbers(std::size_t count) const {
    const std::vector<double> numbers = AsNumbers();
    if (numbers.size() != count) {
        Fail("expected " + std::to_string(count) + " numbers, found " +
             std::to_string(numbers.size()));
    }
    return numbers;
}

std::size_t JsonNode::AsOneOf(std::initializer_list<const char*> names) const {
    const std::string text = AsString();
    const std::vector<std::string> known(names.begin(), names.end());
    const auto found = std::find(known.begin(), known.end(), text);
    if (found == known.end()) {
        std::string list;
        for (const std::string& name : known) {
            list += (list.empty() ? "" : ", ") + name;
        }
        Fail("'" + text + "' is none of " + list + SuggestName(text, known));
    }
    return static_cast<std::size_t>(found - known.begin());
}

} // namespace Tolen::Scene
