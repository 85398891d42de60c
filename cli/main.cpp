#include "cli/program.h"

int main(int argc, char** argv) { return zelk::cli::Run(argc, argv); }
