#include "Print.h"

#include "StatsList.h"

#include "TolenEffects/StatsProtocol.h"

#include "TolenCore/Format.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Tolen::StatsTool {

namespace {

std::string _NameKind(std::uint8_t kind) {
    switch (kind) {
    case StatsProtocol::kKind_HitCount:
        return "hit count";
    case StatsProtocol::kKind_Time:
        return "time";
    default:
        return Format("kind %d", kind);
    }
}

std::string _Escape(const std::string& name) {
    std::string escaped;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isControl = byte < 0x20 || byte == 0x7f;
        escaped += isControl ? Format("\\x%02x", byte) : std::string(1, c);
    }
    return escaped;
}

std::string _PrintValues(const Statistic& statistic) {
    std::string text;
    for (const double value : statistic.values) {
        text += statistic.kind == StatsProtocol::kKind_Time ? Format(" %.3f", value * 1000.0)
                                                            : Format(" %.0f", value);
    }
    return text;
}

} // namespace

std::string PrintTable(const StatsList& list) {
    if (list.statistics.empty()) {
        return "no statistics\n";
    }
    const bool hasValues =
        std::any_of(list.statistics.begin(), list.statistics.end(),
                    [](const auto& entry) { return !entry.second.values.empty(); });
    std::size_t width = 4;
    for (const auto& [id, statistic] : list.statistics) {
        width = std::max(width, _Escape(statistic.name).size());
    }
    std::string text = "   id  kind       name";
    if (hasValues) {
        text += std::string(width - 4, ' ') + "  values, times in ms";
    }
    text += '\n';
    for (const auto& [id, statistic] : list.statistics) {
        std::string name = _Escape(statistic.name);
        if (!statistic.values.empty()) {
            name.resize(width + 1, ' ');
        }
        text += Format("%5d  %-9s  ", id, _NameKind(statistic.kind).c_str()) + name +
                _PrintValues(statistic) + '\n';
    }
    return text;
}

std::string PrintJson(const StatsList& list) {
    nlohmann::ordered_json statistics = nlohmann::ordered_json::array();
    for (const auto& [id, statistic] : list.statistics) {
        nlohmann::ordered_json entry = {
            {"id", id}, {"kind", _NameKind(statistic.kind)}, {"name", statistic.name}};
        for (const double value : statistic.values) {
            if (statistic.kind == StatsProtocol::kKind_HitCount) {
                entry["values"].push_back(static_cast<std::int64_t>(value));
            } else {
                entry["values"].push_back(value);
            }
        }
        statistics.push_back(std::move(entry));
    }
    const nlohmann::ordered_json document = {{"statistics", std::move(statistics)}};
    // Names are any bytes; what is no UTF-8 can't stand in JSON.
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

} // namespace Tolen::StatsTool
