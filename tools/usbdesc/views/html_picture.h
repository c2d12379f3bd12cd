// Pictures of a configuration as HTML: its functions, interfaces, alternate settings and endpoints
// as boxes, and the terminals and units of an audio or video function as a graph in SVG.
#pragma once

#include <cstddef>

#include <tools/usbdesc/outline.h>
#include <tools/usbdesc/views/html_writer.h>

namespace usb_support::usbdesc {

/// Adds the boxes of a run that is a configuration.
void AddPicture(HtmlWriter& html, Outline const& outline, OutlineRun const& run);

/// Adds a graph for each control interface of an audio or video function in the run. At most 255
/// entities are in one; its size is at most linear in the entities and their sources.
void AddGraphs(HtmlWriter& html, Outline const& outline, OutlineRun const& run);

}  // namespace usb_support::usbdesc
