#pragma once

#include "apps/host/frame_window.h"

#include <string>

namespace selvane_host {

/// What the shown page holds and where, a line for each thing, in pixels of the screen:
///
///     frame "Camera Properties" 30,10 527x570
///     command "OK" 260,540 88x24
///     page 1 of 4 "Selvane Exposure Controls" 40,60 428x457
///     tab 1 "Selvane Exposure Controls" 42,32 150x20
///     label "Gain" 60,78 110x23
///     slider "Gain" of "Gain" 175,78 140x23 enabled position 40 of 0..100 thumb 210,80 11x20
///     edit "Gain" of "Gain" 320,78 60x22 enabled text "6.00 dB"
///     combo "Mode" of "WDR" 169,417 225x21 enabled "Logarithmic" of "Dual exposure" "Logarithmic"
///     entry "Dual exposure" of "Mode" 170,438 223x16
///     box "Error" "Error parsing value!" 140,200 260x110
///     answer "OK" of "Error" 230,270 75x23
///     end
///
/// Entries are there while their list is open, commands are the frame's own buttons, a box with its answers
/// is one that waits before the page. The rect of the frame is that inside its border. A control bears its
/// own caption, or the label in front of it in its row, and the item it belongs to: the outermost label above
/// it. Empty while no page is shown.
[[nodiscard]] std::string describe_layout(const frame_window& frame);

}  // namespace selvane_host
