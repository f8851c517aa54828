#include "cli/commands.h"

#include <iostream>

namespace cli {

// Not available yet in this build.
int runOutline(const Args&) {
    std::cerr << "tessary-cli: 'outline' is not available in this build\n";
    return 2;
}

} // namespace cli
