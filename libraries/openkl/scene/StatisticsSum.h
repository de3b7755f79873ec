#pragma once

namespace Tolen::OpenKL {

struct Statistics;

/// Adds each number of @p other to that of @p sum.
void AddStatistics(Statistics& sum, const Statistics& other);

} // namespace Tolen::OpenKL
