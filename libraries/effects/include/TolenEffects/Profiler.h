#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/LifeToken.h"

#include <map>
#include <string>
#include <vector>

namespace Tolen::Effects {

/// Time samples by name, in milliseconds, in the order in which they were taken.
class TOLEN_EXPORT Profiler {
public:
    /// Samples by name.
    using Samples = std::map<std::string, std::vector<float>>;

    /// Appends a sample of @p name.
    void AddTimeSample(const std::string& name, float milliseconds);

    /// All samples; names without any don't occur.
    const Samples& GetTimeSamples() const { return _samples; }

    /// Writes one line for each name to the debugger output: "name (ms):1.5, 2".
    void Dump() const;

    /// Tells scopes that are still open when the manager shuts down that there is nothing to tell.
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }

private:
    Samples _samples;
    LifeToken _life;
};

} // namespace Tolen::Effects
