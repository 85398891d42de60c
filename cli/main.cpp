#include "cli/program.h"
#include "platform/console.h"

int main(int argc, char** argv) {
  zelk::UsePlainLineEnds();
  return zelk::cli::Run(argc, argv);
}
