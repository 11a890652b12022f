#include "svg_boxes.h"

#include <cstddef>
#include <string_view>

namespace wqstat {

namespace {

/** A text that is read from its begin. */
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    bool skip(std::string_view expected)
    {
        if (rest.substr(0, expected.size()) != expected) return false;
        rest.remove_prefix(expected.size());
        return true;
    }

    /** What stands before the text, which is passed over as well. Empty where it is not there. */
    std::string_view until(std::string_view end)
    {
        const std::size_t length = rest.find(end);
        if (length == std::string_view::npos) return {};
        const std::string_view found = rest.substr(0, length);
        rest.remove_prefix(length + end.size());
        return found;
    }

    std::string_view remaining() const { return rest; }

private:
    std::string_view rest;
};

struct Box {
    std::string_view colour;
    std::string path;
    std::size_t length = 0;  ///< of the text that it takes; 0 where no box begins
};

/** The box that begins here, when its border is of its own colour. */
Box boxAt(std::string_view text)
{
    Scanner scanner(text);
    Box box;
    if (!scanner.skip("<g fill=\"none\" ") || scanner.until(">\n").empty()) return {};
    if (!scanner.skip("\t<g stroke='none' shape-rendering='crispEdges'>\n\t\t<polygon fill = '")) return {};
    box.colour = scanner.until("' points = '");
    std::string_view x[4];
    std::string_view y[4];
    for (int corner = 0; corner < 4; ++corner) {
        x[corner] = scanner.until(",");
        y[corner] = scanner.until(" ");
    }
    const bool isBox = !x[0].empty() && x[0] == x[3] && x[1] == x[2] && y[0] == y[1] && y[2] == y[3];
    if (!isBox || !scanner.skip("'/>\n\t</g>\n\t<path stroke='") || scanner.until("'  d='") != box.colour) return {};
    if (scanner.until("'/></g>\n").empty() || box.colour.empty()) return {};
    box.path.append("M").append(x[0]).append(",").append(y[0]).append("H").append(x[1]).append("V").append(y[2]);
    box.path.append("H").append(x[0]).append("z");
    box.length = text.size() - scanner.remaining().size();
    return box;
}

}  // namespace

std::string withBoxesJoined(const std::string& svg)
{
    std::string result;
    std::string colour;
    std::string path;
    const auto finishPath = [&] {
        if (!path.empty()) result += "<path fill='" + colour + "' stroke='" + colour + "' d='" + path + "'/>\n";
        path.clear();
    };
    for (std::string_view rest = svg; !rest.empty();) {
        const Box box = boxAt(rest);
        if (box.length > 0) {
            if (box.colour != colour) finishPath();
            colour = box.colour;
            path += box.path;
            rest.remove_prefix(box.length);
            continue;
        }
        finishPath();
        const std::size_t line = rest.find('\n');
        const std::size_t length = line == std::string_view::npos ? rest.size() : line + 1;
        result += rest.substr(0, length);
        rest.remove_prefix(length);
    }
    finishPath();
    return result;
}

}  // namespace wqstat
