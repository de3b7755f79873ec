#pragma once

#include "TolenOpenKL/IContext.h"

#include <string>
#include <vector>

class MgrStats;
class Stat;

namespace Tolen::Render {

/// Feeds what the renderer counts into the statistics of the process.
///
/// A slot is a picture of an animation, with whatever was compiled, linked and written for it. A
/// single picture has several slots, one for each step of its tiles, so that one can watch it come
/// along. With "MGR_STATS_DUMP_TCPIP" set, the list can be read from when the object is made until
/// it is destroyed; into the file of "MGR_STATS_DUMP_FILE" goes a line of JSON for each picture: a
/// list of the statistics with the hit counts of its slots.
class RenderStatistics {
public:
    /// Steps that a single picture is divided into. Together with what follows they fit into the
    /// slots that are remembered.
    static constexpr int kStepsOfSinglePicture = 32;

    RenderStatistics();
    ~RenderStatistics();
    RenderStatistics(const RenderStatistics&) = delete;
    RenderStatistics& operator=(const RenderStatistics&) = delete;

    void BeginPicture(const OpenKL::IContext& context, int steps);
    /// Not to be called from two threads at once.
    void OnProgress(const OpenKL::RenderProgress& progress);
    void EndPicture(const OpenKL::IContext& context);

    /// A table of all statistics, in total and in the last slot, and of how full batches were.
    std::string Print() const;

private:
    void _Count(const OpenKL::Statistics& now);
    void _EndSlot();
    void _DumpToFile();

    MgrStats& _manager;
    std::vector<Stat*> _counts; ///< borrowed, as the numbers they are made of are listed
    std::vector<Stat*> _times;
    OpenKL::Statistics _counted; ///< what the statistics have been told
    OpenKL::Statistics _slotBegin;
    OpenKL::Statistics _lastSlotBegin;
    OpenKL::Statistics _lastSlotEnd;
    OpenKL::Statistics _pictureBegin;
    std::int64_t _step = 0;
    std::int64_t _steps = 1;
};

} // namespace Tolen::Render
