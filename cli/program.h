// The program from command line to exit code.
#pragma once

namespace zelk::cli {

int Run(int argc, char** argv);

}  // namespace zelk::cli
