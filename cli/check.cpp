#include "cli/commands.h"

#include <iostream>

namespace cli {

// Not available yet in this build.
int runCheck(const Args&) {
    std::cerr << "tessary-cli: 'check' is not available in this build\n";
    return 2;
}

} // namespace cli
