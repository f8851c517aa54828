#include "cli/commands.h"

#include <iostream>

namespace cli {

// Not available yet in this build.
int runGenerate(const Args&) {
    std::cerr << "tessary-cli: 'generate' is not available in this build\n";
    return 2;
}

} // namespace cli
