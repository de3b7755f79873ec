#include "TolenEffects/MgrStats.h"

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include "TolenCore/Console.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// Of the one object; closed by its Shutdown().
std::FILE* pDumpFile = nullptr;

constexpr std::chrono::milliseconds kPauseBetweenTries(1000);

/// One message, put together so that it leaves in one piece.
class Message {
public:
    explicit Message(StatsProtocol::Message type) { AddByte(type); }

    void AddByte(std::uint8_t byte) { _bytes.push_back(byte); }
    void AddInteger(std::size_t value) {
        const auto integer = static_cast<std::int32_t>(value);
        Add(&integer, sizeof integer);
    }
    void Add(const void* data, std::size_t size) {
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        _bytes.insert(_bytes.end(), bytes, bytes + size);
    }

    bool Send(IPCWrapper* wrapper) const {
        const auto size = static_cast<int>(_bytes.size());
        return wrapper->Write(_bytes.data(), size) == size;
    }

private:
    std::vector<std::uint8_t> _bytes;
};

void WriteText(IPCWrapper* wrapper, std::string_view text) {
    wrapper->Write(text.data(), static_cast<int>(text.size()));
}

template <class T>
void AddValues(Message& message, const std::array<T, Stat::kCountSlots>& values, std::size_t first,
               std::size_t count) {
    message.AddInteger(count * sizeof(T));
    message.Add(values.data() + first, count * sizeof(T));
}

} // namespace

MgrStats* MgrStats::GetMgrStats() {
    // Never deleted: the server's thread may use it until the process is gone.
    static MgrStats* const manager = new MgrStats();
    return manager;
}

MgrStats::MgrStats() {
    if (std::getenv("MGR_STATS_DUMP_TCPIP") != nullptr) {
        _isServing = true;
        try {
            _thread = std::thread([this] { ServerLoop(); });
        } catch (const std::exception&) {
            _isServing = false;
            Tolen::ConsolePrint("MgrStats::MgrStats Create Thread\n");
        }
    } else if (const char* const file = std::getenv("MGR_STATS_DUMP_FILE")) {
        pDumpFile = std::fopen(file, "wb");
        if (pDumpFile == nullptr) {
            Tolen::ConsolePrint("MgrStats::MgrStats Open File %s\n", file);
        }
    }
}

MgrStats::~MgrStats() {
    Shutdown();
    {
        std::unique_lock lock(_mutex);
        _wake.wait(lock, [this] { return !_isServing; });
    }
    for (const Stat* stat = GetHead(); stat != nullptr;) {
        const std::unique_ptr<const Stat> destroyed(stat);
        stat = stat->GetNext();
    }
}

Stat* MgrStats::CreateNewStat(const char* name, const std::string&, int kind) {
    const std::lock_guard lock(_creationMutex);
    Stat* const stat = new Stat(name, kind, _nextId++, &_slot);
    stat->_pNext = GetHead();
    // Readers on other threads see it complete, as the store to the head comes last.
    _pHead.store(stat, std::memory_order_release);
    return stat;
}

std::FILE* MgrStats::GetDumpFile() {
    return pDumpFile;
}

void MgrStats::AdvanceSlot() {
    _slot = (_slot + 1) & (Stat::kCountSlots - 1);
}

void MgrStats::DumpStat(IPCWrapper* wrapper, Stat* stat, int end) {
    if (wrapper == nullptr || stat == nullptr) {
        return;
    }
    const int last = end < Stat::kCountSlots ? end : Stat::kCountSlots;
    const auto first = static_cast<std::size_t>(_dumpCursor);
    const auto count = last > _dumpCursor ? static_cast<std::size_t>(last) - first : 0;
    Message message(StatsProtocol::kMessage_StatisticData);
    message.AddInteger(static_cast<std::size_t>(stat->_id));
    if (stat->_kind == Stat::kKind_HitCount) {
        AddValues(message, stat->_hitCounts, first, count);
    } else if (stat->_kind == Stat::kKind_Time) {
        AddValues(message, stat->_times, first, count);
    } else {
        message.AddInteger(0);
    }
    message.Send(wrapper);
}

void MgrStats::DumpStats(IPCWrapper* wrapper) {
    if (wrapper == nullptr || _dumpCursor == _slot) {
        return;
    }
    constexpr int kMask = Stat::kCountSlots - 1;
    for (Stat* stat = GetHead(); stat != nullptr; stat = stat->_pNext) {
        WriteText(wrapper, "{ \"name\" : \"");
        WriteText(wrapper, stat->_name);
        WriteText(wrapper, "\", \"value\":[");
        for (int slot = _dumpCursor; slot != _slot; slot = (slot + 1) & kMask) {
            if (slot != _dumpCursor) {
                WriteText(wrapper, ",");
            }
            stat->DumpHitCount(wrapper, slot);
        }
        WriteText(wrapper, "]}");
        if (stat->_pNext != nullptr) {
            WriteText(wrapper, ",");
        }
    }
    _dumpCursor = _slot;
}

void MgrStats::SendNewStats(IPCWrapper* wrapper, Stat* stop) {
    if (wrapper == nullptr) {
        return;
    }
    bool isSent = true;
    Stat* stat = GetHead();
    for (; isSent && stat != nullptr && stat != stop; stat = stat->_pNext) {
        _pSendCursor = stat;
        Message message(StatsProtocol::kMessage_NewStatistic);
        message.AddInteger(stat->_name.size());
        message.Add(stat->_name.data(), stat->_name.size());
        message.AddByte(static_cast<std::uint8_t>(stat->_kind + 1));
        message.AddInteger(static_cast<std::size_t>(stat->_id));
        isSent = message.Send(wrapper);
    }
    _pSendCursor = stat;
}

void MgrStats::Dump() {}

void MgrStats::ServerLoop() {
    bool isTold = false;
    while (IPCWrapperTCPIP* const wrapper = _CreateWrapper()) {
        wrapper->Listen();
        const bool isClient = wrapper->GetPortFound() != -1;
        if (isClient) {
            SendNewStats(wrapper, nullptr);
            // Any byte ends the connection, as its end does.
            char byte = 0;
            wrapper->Read(&byte, 1);
        } else if (wrapper->IsPortTaken() && !isTold) {
            // Not by the console, which belongs to the program's own thread.
            isTold = std::fprintf(stderr, "MgrStats::ServerLoop Port %d Is Taken\n",
                                  StatsProtocol::kPort) > 0;
        }
        std::unique_lock lock(_mutex);
        _pWrapper.reset();
        if (!isClient) {
            _wake.wait_for(lock, kPauseBetweenTries, [this] { return _stop != 0; });
        }
    }
    const std::lock_guard lock(_mutex);
    _isServing = false;
    _wake.notify_all();
}

IPCWrapperTCPIP* MgrStats::_CreateWrapper() {
    try {
        auto made = std::make_unique<IPCWrapperTCPIP>("localhost", StatsProtocol::kPort,
                                                      StatsProtocol::kPort);
        const std::lock_guard lock(_mutex);
        if (_stop != 0) {
            return nullptr;
        }
        IPCWrapperTCPIP* const wrapper = made.get();
        _pWrapper = std::move(made);
        return wrapper;
    } catch (const std::exception&) {
        return nullptr;
    }
}

void MgrStats::Shutdown() {
    {
        const std::lock_guard lock(_mutex);
        _stop = 1;
        if (_pWrapper != nullptr) {
            _pWrapper->Stop();
        }
        _wake.notify_all();
    }
    if (_thread.joinable()) {
        _thread.detach();
    }
    if (pDumpFile != nullptr) {
        std::fclose(pDumpFile);
        pDumpFile = nullptr;
    }
}
