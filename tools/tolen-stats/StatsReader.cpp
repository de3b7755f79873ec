#include "StatsReader.h"

#include "StatsError.h"

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <poll.h>
#include <string>
#include <utility>

namespace Tolen::StatsTool {

namespace {

using std::chrono::milliseconds;

/// A list takes milliseconds; who needs longer than all this sends something else.
constexpr milliseconds kPatience(5'000);
/// A program that is silent at first has no statistics, one that is silent behind its list no
/// values to send.
constexpr milliseconds kSilenceAtFirst(1'000);
constexpr milliseconds kSilenceBehind(200);

[[noreturn]] void _Complain(const std::string& found) {
    throw StatsError("what listens there sends no statistics: " + found);
}

} // namespace

StatsList StatsReader::ReadList() {
    _list = StatsList();
    _end = Clock::now() + kPatience;
    while (_WaitForMessage()) {
        _ReadMessage();
    }
    return std::move(_list);
}

/// @return false when there are no more
bool StatsReader::_WaitForMessage() const {
    const bool isEmpty = _list.statistics.empty();
    if (!isEmpty && !_list.IsComplete()) {
        return true;
    }
    const Clock::time_point now = Clock::now();
    if (now >= _end || !_WaitForBytes(now + (isEmpty ? kSilenceAtFirst : kSilenceBehind))) {
        return false;
    }
    const bool isAtEnd = _connection.BytesAvailable() == 0;
    if (isAtEnd && isEmpty) {
        throw NobodyServes("the program ended the connection at once; perhaps it is ending, or "
                           "serves another client");
    }
    return !isAtEnd;
}

void StatsReader::_ReadMessage() {
    const auto type = _Read<std::uint8_t>();
    switch (type) {
    case StatsProtocol::kMessage_NewStatistic:
        _ReadNewStatistic();
        return;
    case StatsProtocol::kMessage_StatisticData:
        _ReadStatisticData();
        return;
    default:
        _Complain(Format("there is no message %d", type));
    }
}

void StatsReader::_ReadNewStatistic() {
    Statistic statistic;
    const auto length = _Read<std::int32_t>();
    if (length < 0 || length > kMaxNameLength) {
        _Complain(Format("a name of %d bytes, where the limit is %d", length, kMaxNameLength));
    }
    statistic.name.resize(static_cast<std::size_t>(length));
    _Read(statistic.name.data(), statistic.name.size());
    statistic.kind = _Read<std::uint8_t>();
    const auto id = _Read<std::int32_t>();
    if (id < 0 || id >= kMaxStatistics) {
        _Complain(Format("the identifier %d, where the limit is %d", id, kMaxStatistics));
    }
    if (!_list.statistics.emplace(id, std::move(statistic)).second) {
        _Complain(Format("the identifier %d for a second time", id));
    }
}

void StatsReader::_ReadStatisticData() {
    const auto id = _Read<std::int32_t>();
    const auto length = _Read<std::int32_t>();
    const auto found = _list.statistics.find(id);
    if (found == _list.statistics.end()) {
        _Complain(Format("values of %d, which it never told of", id));
    }
    Statistic& statistic = found->second;
    const std::size_t size = statistic.kind == StatsProtocol::kKind_HitCount ? sizeof(std::int32_t)
                             : statistic.kind == StatsProtocol::kKind_Time   ? sizeof(double)
                                                                             : 0;
    const auto bytes = static_cast<std::size_t>(length);
    if (length < 0 || bytes > kMaxValues * size || (size != 0 && bytes % size != 0)) {
        _Complain(Format("%d bytes of values of %d", length, id));
    }
    if (statistic.kind == StatsProtocol::kKind_HitCount) {
        _ReadValues<std::int32_t>(bytes / size, statistic);
    } else if (statistic.kind == StatsProtocol::kKind_Time) {
        _ReadValues<double>(bytes / size, statistic);
    }
}

template <class T>
void StatsReader::_ReadValues(std::size_t count, Statistic& statistic) {
    std::vector<double>& values = statistic.values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(static_cast<double>(_Read<T>()));
    }
    if (values.size() > kMaxValues) {
        values.erase(values.begin(), values.end() - static_cast<std::ptrdiff_t>(kMaxValues));
    }
}

void StatsReader::_Read(void* data, std::size_t size) {
    auto* bytes = static_cast<char*>(data);
    while (size != 0) {
        if (!_WaitForBytes(_end)) {
            _Fail("no more comes from the program");
        }
        // No more than is there, since Read would wait for the rest, however long; one byte at the
        // end of the connection, which there Read tells.
        const auto available = static_cast<std::size_t>(std::max(_connection.BytesAvailable(), 1));
        const int read = _connection.Read(bytes, static_cast<int>(std::min(size, available)));
        if (read <= 0) {
            _Fail("the connection ended early");
        }
        bytes += read;
        size -= static_cast<std::size_t>(read);
    }
}

/// @return whether there are bytes, or the end of the connection, before @p end
bool StatsReader::_WaitForBytes(Clock::time_point end) const {
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    pollfd waited{_connection.GetSocket(), POLLIN, 0};
    return poll(&waited, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0))) > 0;
}

void StatsReader::_Fail(const char* reason) const {
    throw StatsError(Format("%s, with %zu of %zu statistics told", reason, _list.statistics.size(),
                            _list.GetAnnounced()));
}

} // namespace Tolen::StatsTool
