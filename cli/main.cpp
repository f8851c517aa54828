// tessary-cli: the COG rules of the editor for scripts and continuous integration.
#include "cli/output.h"

int main(int argc, char** argv) {
    return cli::runWithCheckedOutput(argc - 1, argv + 1);
}
