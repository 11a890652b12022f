// What gnuplot's files lack: a title and a description of their own, a size in print.
#pragma once

#include "picture.h"
#include "svg_element.h"

#include <string>

namespace wqstat {

/** gnuplot's SVG as a file: well-formed, with title and description, in the size that was asked for. */
std::string svgFile(std::string svg, const Picture& picture);

/** gnuplot's SVG as an element of a page. @param ids what its ids begin with. */
SvgElement svgElement(std::string svg, const Picture& picture, const std::string& ids);

/** So many points as hold the pixels: gnuplot draws PDF pages of whole ones. */
double wholePoints(double pixels);

/** A PDF, drawn on whole points, with a page of the size that was asked for. One that is written otherwise than cairo 1.16 does stays as it
 * is. */
std::string withExactPage(std::string pdf, const Canvas& canvas);

/** A PNG with its dots to an inch. */
std::string withResolution(std::string png, double dots);

}  // namespace wqstat
