#include "cli/program.h"
#include "platform/com_apartment.h"
#include "platform/console.h"

int main(int argc, char** argv) {
  zelk::UsePlainLineEnds();
  const zelk::ComApartment com;
  return zelk::cli::Run(argc, argv);
}
