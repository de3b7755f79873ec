#pragma once

#include "TolenEffects/Stat.h"

#include "TolenCore/Export.h"

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

class IPCWrapper;
class IPCWrapperTCPIP;

/// The statistics of a program, by frames, and where they can be had from outside.
///
/// Two environment variables are looked at when the object is made. With "MGR_STATS_DUMP_TCPIP" set
/// to anything, a thread offers the list of statistics on TCP port 8881, as StatsProtocol.h tells,
/// to whoever reaches this machine. Otherwise "MGR_STATS_DUMP_FILE" names a file that is made empty
/// and opened; what to write to it is the program's choice. Without either there is no thread and
/// no file.
///
/// Statistics may be made on any thread; everything else is for one thread, the program's own.
class TOLEN_EXPORT MgrStats {
public:
    /// The one object of the process, made at the first call and never deleted.
    static MgrStats* GetMgrStats();

    MgrStats(const MgrStats&) = delete;
    MgrStats& operator=(const MgrStats&) = delete;

    /// Makes a statistic, which lives as long as this object.
    /// @param name shown to who reads the statistics; several may share one. The text behind it is
    ///             not looked at.
    /// @param kind a Stat::Kind
    Stat* CreateNewStat(const char* name, const std::string&, int kind);

    /// Goes on to the next frame, which begins with what its slot held 64 frames ago: clear the
    /// statistics that are to start from 0.
    void AdvanceSlot();
    /// The slot of the current frame, 0 to 63.
    int GetSlot() const { return _slot; }
    /// The most recently made statistic, null for none; Stat::GetNext() leads to the others.
    Stat* GetHead() const { return _pHead.load(std::memory_order_acquire); }
    /// The file of "MGR_STATS_DUMP_FILE", null for none and after Shutdown(). Borrowed.
    static std::FILE* GetDumpFile();

    /// Sends the values of @p stat as one message, from the first frame that was not dumped up to
    /// @p end, which is not included and lies in the same round of the ring.
    /// @param wrapper takes the bytes
    /// @param stat    of this object
    /// @param end     a slot
    void DumpStat(IPCWrapper* wrapper, Stat* stat, int end);
    /// Writes the hit counts of all statistics since the last call as text:
    /// `{ "name" : "rays", "value":[3,5]},{ ... }`. Brackets around the list are the caller's.
    void DumpStats(IPCWrapper* wrapper);
    /// Announces the statistics that were made after @p stop, the newest first; all for null.
    void SendNewStats(IPCWrapper* wrapper, Stat* stop);
    /// Does nothing.
    void Dump();

    /// Serves clients, one after another, until Shutdown(). Run by the thread of this object.
    void ServerLoop();

    /// Ends the server without waiting for its thread, and closes the file. Statistics stay.
    void Shutdown();

protected:
    MgrStats();
    /// Shuts down and waits until the server's thread is done.
    ~MgrStats();

    /// Whether a thread serves clients; it does no more from Shutdown() on.
    bool HasThread() const { return _thread.joinable(); }

private:
    IPCWrapperTCPIP* _CreateWrapper();

    std::atomic<Stat*> _pHead{nullptr};
    std::atomic<Stat*> _pSendCursor{nullptr}; ///< of the latest sending, on whatever thread
    int _nextId = 0;
    std::thread _thread;
    std::unique_ptr<IPCWrapper> _pWrapper; ///< while a client is awaited or served
    int _stop = 0;
    int _dumpCursor = 0; ///< the first slot that is not yet dumped
    int _slot = 0;

    std::mutex _creationMutex; ///< keeps the list in the order of identifiers
    std::mutex _mutex;         ///< guards the wrapper, the stop and the end of the loop
    std::condition_variable _wake;
    bool _isServing = false; ///< the thread is in its loop
};
