// Brings a full status and a full checkpoint to a server, for scripts/check-words.
//
//   words_agent SOCKET FOLDER
//
// When the server has applied both it says "brought"; then it reads lines, changes both at each line
// "change", and says "changed". Before it says a word it writes what it holds itself to
// FOLDER/WORD.status.json and FOLDER/WORD.checkpoint.json. It ends with its input.

#include "FullTrees.h"
#include "pbrctl/Agent.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "pbrctl/RootFile.h"

#include <fstream>
#include <iostream>
#include <stdexcept>

namespace words_test {
namespace {

class Writer {
public:
  Writer(std::string const& socket, std::string folder)
      : folder_(std::move(folder)), agent_({Vyx::NboAttrLog::UnixAddress{socket}, std::chrono::seconds(20)}) {
    agent_.bring("pbr/status", status_);
    agent_.bring("pbr/checkpoint", checkpoint_);
    tell("brought");
  }

  void changeBoth() {
    change(*status_);
    change(*checkpoint_);
    tell("changed");
  }

private:
  void tell(std::string const& word) {
    bool const isInTime = agent_.settle();
    if (!agent_.refused().empty()) throw std::runtime_error("refused: " + agent_.refused());
    if (!agent_.ended().empty()) throw std::runtime_error("the connection has ended: " + agent_.ended());
    if (!isInTime) throw std::runtime_error("no answer in time");
    write(word + ".status.json", *status_);
    write(word + ".checkpoint.json", *checkpoint_);
    std::cout << word << std::endl;
  }
  void write(std::string const& name, Vyx::Entity const& root) const {
    std::ofstream out(folder_ + "/" + name, std::ios::binary);
    if (Pbrctl::showRoot(root, true, {out, std::cerr}) != Pbrctl::kDone || !out.flush())
      throw std::runtime_error("can't write " + folder_ + "/" + name);
  }

  std::string const folder_;
  Vyx::Ptr<Pbr::Status> status_ = fullStatus();
  Vyx::Ptr<Pbr::CheckpointStatus> checkpoint_ = fullCheckpoint();
  Pbrctl::Agent agent_;
};

void run(std::string const& socket, std::string const& folder) {
  Writer writer(socket, folder);
  for (std::string line; std::getline(std::cin, line);) {
    if (line != "change") throw std::runtime_error("unknown word '" + line + "'");
    writer.changeBoth();
  }
}

} // namespace
} // namespace words_test

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: words_agent SOCKET FOLDER\n";
    return 2;
  }
  try {
    words_test::run(argv[1], argv[2]);
    return 0;
  } catch (std::exception const& e) {
    std::cerr << "words_agent: error: " << e.what() << '\n';
    return 1;
  }
}
