#pragma once

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Tolen::Tests {

/// The bytes of a value as they are sent.
template <class T>
std::string Bytes(T value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

inline std::string Integer(std::size_t value) {
    return Bytes(static_cast<std::int32_t>(value));
}

inline std::string NewStatistic(int id, const std::string& name,
                                char kind = StatsProtocol::kKind_HitCount) {
    return '\1' + Integer(name.size()) + name + kind + Bytes(static_cast<std::int32_t>(id));
}

template <class T>
std::string StatisticData(int id, const std::vector<T>& values) {
    std::string bytes;
    for (const T value : values) {
        bytes += Bytes(value);
    }
    return '\2' + Bytes(static_cast<std::int32_t>(id)) + Integer(bytes.size()) + bytes;
}

/// Sends what it is told to its first client, in place of a program with statistics.
class ScriptedServer {
public:
    enum End { kEnd_WhenClientDoes, kEnd_AtOnce };

    explicit ScriptedServer(std::string script, End end = kEnd_WhenClientDoes)
        : _script(std::move(script)), _thread([this, end] { _Serve(end); }) {}
    ~ScriptedServer() {
        _connection.Stop();
        _thread.join();
    }
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

private:
    void _Serve(End end) {
        do {
            _connection.Listen();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        } while (_connection.IsPortTaken());
        _connection.Write(_script.data(), static_cast<int>(_script.size()));
        if (end == kEnd_WhenClientDoes) {
            char byte = 0;
            _connection.Read(&byte, 1);
        }
        _connection.Close();
    }

    std::string _script;
    IPCWrapperTCPIP _connection{"localhost", StatsProtocol::kPort, StatsProtocol::kPort};
    std::thread _thread;
};

} // namespace Tolen::Tests
