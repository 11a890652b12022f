// Runs gnuplot to draw a picture file.
#pragma once

#include <string>

namespace wqstat {

/** @throws WrongUsage when the name does not end in .svg, .png or .pdf. */
void checkPictureName(const std::string& fileName);

/** @throws CannotAnalyse when gnuplot is not on PATH. */
void requireGnuplot();

/**
 * Draws into the file, which is replaced once the picture is whole, and left alone when that fails.
 * @param commands what to draw, without terminal and output.
 * @throws CannotAnalyse when gnuplot is absent, fails, or the file cannot be written.
 */
void draw(const std::string& commands, const std::string& fileName);

}  // namespace wqstat
