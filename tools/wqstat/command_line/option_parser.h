// The option parser's classes by name, for headers that only hand them on: its own header is long.
#pragma once

namespace CLI {
class App;
class Option;
}  // namespace CLI
