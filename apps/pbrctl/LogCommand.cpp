#include "pbrctl/Commands.h"
#include "pbrctl/LogDump.h"

#include <fstream>
#include <iterator>

namespace Pbrctl {

int dumpLog(std::string const& file, Io io) {
  std::ifstream in(file, std::ios::binary);
  std::string const bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in.is_open() || in.bad()) {
    io.err << file << ": error: the file cannot be read\n";
    return kRefused;
  }
  LogDump dump({reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size()}, io.out);
  std::string const problem = dump.run();
  if (problem.empty()) return kDone;
  io.err << file << ": error: " << problem << '\n';
  return kRefused;
}

} // namespace Pbrctl
