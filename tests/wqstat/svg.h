// Pictures as a reader of XML sees them.
#pragma once

#include "program.h"

#include <gtest/gtest.h>

#include <string>

namespace wq_test {

// The texts of an SVG file, one to a line; a parser that refuses the file is a failure.
inline std::string textsOf(const std::string& svg)
{
    const Outcome outcome = runCommand({"python3", "-c",
                                        "import sys, xml.etree.ElementTree as xml\n"
                                        "for node in xml.parse(sys.argv[1]).iter('{http://www.w3.org/2000/svg}text'):\n"
                                        "    sys.stdout.buffer.write((''.join(node.itertext()).strip() + '\\n').encode())\n",
                                        svg});
    EXPECT_EQ(outcome.status, 0) << svg << " is no XML: " << outcome.errors;
    return outcome.output;
}

}  // namespace wq_test
