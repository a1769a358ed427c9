#include "pbrctl/CommandLine.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
  try {
    int const result = Pbrctl::runCommandLine(argc, argv, {std::cout, std::cerr});
    std::cout.flush();
    if (std::cout) return result;
    std::cerr << "pbrctl: error: the output cannot be written\n";
  } catch (std::exception const& e) {
    std::cerr << "pbrctl: error: " << e.what() << '\n';
  }
  return Pbrctl::kRefused;
}
