// A picture as an element of a page.
#pragma once

#include <string>
#include <utility>

namespace wqstat {

struct Picture;

/** Well-formed, with a title and a description for those who do not see it. Only gnuplot's pictures become one. */
class SvgElement {
public:
    SvgElement() = default;
    const std::string& markup() const { return svg; }

private:
    explicit SvgElement(std::string element) : svg(std::move(element)) {}
    friend SvgElement svgElement(std::string svg, const Picture& picture, const std::string& ids);

    std::string svg;
};

}  // namespace wqstat
