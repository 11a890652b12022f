// The colours of all pictures: of histograms, points, lines, bands and texts.
#pragma once

namespace wqstat {

/** Colours that the colour-blind tell apart; on grey they differ in lightness, and every use of them differs in shape as well. */
namespace colour {
constexpr char blue[] = "#0072b2";
constexpr char seeThrough[] = "#500072b2";  // blue; where marks overlap they are darker
constexpr char histogram[] = "#b3d9f2";     // sky, also of the sectors of roses
constexpr char vermilion[] = "#c04a00";
constexpr char band[] = "#f6dcc8";
constexpr char black[] = "#000000";
constexpr char grey[] = "#707070";
}  // namespace colour

}  // namespace wqstat
