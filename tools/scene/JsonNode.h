#pragma once

#include <cstddef>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Scene {

/// A value of a scene file together with its place there, so that every complaint can tell where.
class JsonNode {
public:
    /// @param value borrowed
    JsonNode(const nlohmann::json& value, std::string place)
        : _pValue(&value), _place(std::move(place)) {}

    const std::string& GetPlace() const { return _place; }
    const nlohmann::json& GetValue() const { return *_pValue; }

    /// Ends the run with a complaint about this value.
    [[noreturn]] void Fail(const std::string& message) const;

    bool Has(const char* key) const;
    /// The member @p key; a missing one is a complaint.
    JsonNode Get(const std::string& key) const;

    /// The elements of an array, or the members of an object in the order of the file's keys.
    std::vector<JsonNode> GetElements() const;
    std::vector<std::pair<std::string, JsonNode>> GetMembers() const;

    /// Complains of members that are not in @p keys, with the nearest of them.
    void AllowOnly(std::initializer_list<const char*> keys) const;

    std::string AsString() const;
    double AsNumber() const;
    bool AsBool() const;
    /// A whole number within the bounds.
    int AsInt(int least, int most) const;
    /// A list of numbers; a single number stands for a list of one.
    std::vector<double> AsNumbers() const;
    /// A list of exactly @p count numbers.
    std::vector<double> AsNumbers(std::size_t count) const;
    /// One of @p names. @return its position
    std::size_t AsOneOf(std::initializer_list<const char*> names) const;

private:
    const nlohmann::json* _pValue;
    std::string _place;
};

/// " (did you mean 'color'?)" with the name nearest to @p name; empty when none is near.
std::string SuggestName(const std::string& name, const std::vector<std::string>& known);

} // namespace Tolen::Scene
