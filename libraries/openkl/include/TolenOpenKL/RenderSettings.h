#pragma once

#include "TolenOpenKL/Statistics.h"

#include "TolenCore/FastDelegate.h"

#include <cstdint>

namespace Tolen::OpenKL {

/// How far a render has come.
struct RenderProgress {
    /// Tiles that are done. A tile counts once for each pass of up to 16 samples of its pixels.
    std::int64_t tilesDone = 0;
    /// Tiles that this render has, counted the same way.
    std::int64_t tiles = 0;
    /// What this render has counted in those tiles.
    Statistics statistics;
};

/// What to render.
struct RenderSettings {
    /// The first sample of each pixel to render now; not below 0. Ranges that don't overlap can be
    /// rendered one after the other into one framebuffer, or apart and added.
    int firstSample = 0;
    /// How many samples of each pixel to render now; not below 0.
    int samples = 1;
    /// The samples that the whole frame is planned to have, which programs read as kl_SampleCount;
    /// 0 stands for firstSample + samples.
    int sampleCount = 0;

    /// The column of the lower left pixel to render. What lies outside the framebuffer is cut off.
    int x = 0;
    /// The row of the lower left pixel to render.
    int y = 0;
    /// Pixels in a row to render; 0 stands for all up to the framebuffer's edge.
    int width = 0;
    /// Rows to render; 0 stands for all up to the framebuffer's edge.
    int height = 0;

    /// Programs read it as kl_Time.
    float time = 0.0f;

    /// Called after each tile, by one rendering thread at a time; an answer of false cancels.
    /// An empty delegate goes on. It must not call the context, except for Cancel.
    FastDelegate1<const RenderProgress&, bool> progress;
};

/// How a render ended.
enum RenderOutcome {
    kRender_Finished,
    kRender_Cancelled, ///< each tile has either all of its samples or none
    kRender_Failed,    ///< nothing was rendered; the messages say why
};

} // namespace Tolen::OpenKL
