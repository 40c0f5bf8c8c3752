#pragma once

/// Says on the diagnostic output what a driver sees, whenever it changes: "screen PREVIEW", "box own 77
/// SELECT_NDF_FILE", "box event none". Bench and bug reports read it.
void ReportTop();
