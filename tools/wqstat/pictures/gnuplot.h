// Runs gnuplot to draw a picture file.
#pragma once

#include "picture.h"
#include "svg_element.h"

#include <string>

namespace wqstat {

/** @throws WrongUsage when the name does not end in .svg, .png or .pdf. */
void checkPictureName(const std::string& fileName);

/** Whether its format is one of dots. */
bool hasDots(const std::string& fileName);

/** @param option that needs it. @throws CannotAnalyse when gnuplot is not on PATH. */
void requireGnuplot(const std::string& option);

/**
 * Draws into the file, which is replaced once the picture is whole, and left alone when that fails.
 * @throws CannotAnalyse when gnuplot is absent, fails, or the file cannot be written.
 */
void draw(const Picture& picture, const std::string& fileName);

/**
 * The picture as an element of a page.
 * @param ids what the names of its parts begin with, so that they differ from those of other pictures.
 * @param pageName of the file that the page is for.
 * @throws CannotAnalyse when gnuplot is absent or fails.
 */
SvgElement inlineSvg(const Picture& picture, const std::string& ids, const std::string& pageName);

}  // namespace wqstat
