// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

namespace kyvconvert
{

/// What a model is made for; the numbers are those of the people who order conversions.
enum class Mode {
    staticModel = 0,      ///< as it is, one level
    qualityFirst = 1,     ///< all of it near by, coarser levels for what is far away
    performanceFirst = 3, ///< simplified near by already, and coarser sooner
};

/// Makes a model as its readers leave it fit to be drawn: one part for each look of a component, equal
/// corners shared, triangles in the order in which a graphics card likes them, triangles without area left
/// out and counted, coarser levels by mode.
void Optimise(SourceModel& source, Mode mode);

} // namespace kyvconvert
