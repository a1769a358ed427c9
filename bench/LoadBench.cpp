// A file of `pbr-map` sequences, 500 a map, read into a tree: from the bytes in memory to the built tree.
// Beside it, a JSON library reads a file of the same content into its own tree, checking and telling nothing.

#include "Processor.h"

#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/TreeBuilder.h"

#include <nlohmann/json.hpp>

#include <sstream>
#include <string>

namespace Bench {

namespace {

constexpr std::uint32_t kSequencesOfAMap = 500;

std::string address(char const* network, std::uint32_t i) {
  return network + std::to_string(i >> 16) + "." + std::to_string(i >> 8 & 255) + "." +
         std::to_string(i & 255);
}

std::string textOf(std::uint32_t sequences) {
  std::string text;
  for (std::uint32_t i = 0; i < sequences; ++i) {
    text += "pbr-map BRANCH" + std::to_string(i / kSequencesOfAMap) + " seq " +
            std::to_string(i % kSequencesOfAMap + 1) + "\n";
    text += " match src-ip " + address("10.", i) + "/32\n";
    text += " set nexthop " + address("172.", i) + "\n!\n";
  }
  return text;
}

Pbrctl::ConfigAst contentOf(Pbrctl::SourceText const& source, Pbrctl::Diagnostics& diagnostics) {
  return Pbrctl::readConfig(source, diagnostics);
}

void readMaps(benchmark::State& state) {
  auto const sequences = static_cast<std::uint32_t>(state.range(0));
  std::string const text = textOf(sequences);
  for (auto _ : state) {
    Vyx::Ptr<Pbr::Config> tree;
    timed(state, [&] {
      Pbrctl::Diagnostics diagnostics("bench.conf");
      Pbrctl::SourceText const source("bench.conf", text);
      tree = Pbrctl::buildTree(contentOf(source, diagnostics), diagnostics);
    });
    if (!tree || tree->pbrActions()->fwdActions() != sequences)
      state.SkipWithError("the tree lacks what the file says");
  }
}

void readJson(benchmark::State& state) {
  Pbrctl::Diagnostics diagnostics("bench.conf");
  Pbrctl::SourceText const source("bench.conf", textOf(static_cast<std::uint32_t>(state.range(0))));
  std::ostringstream json;
  Pbrctl::writeJson(contentOf(source, diagnostics), json);
  std::string const text = json.str();
  for (auto _ : state) {
    nlohmann::json tree;
    timed(state, [&] { tree = nlohmann::json::parse(text); });
    if (tree.empty()) state.SkipWithError("the JSON library reads nothing");
  }
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using Scenario = void (*)(benchmark::State&);
  for (auto const& [name, run] : {std::pair<char const*, Scenario>{"pbr-map/reader", Bench::readMaps},
                                  {"pbr-map/nlohmann json", Bench::readJson}})
    benchmark::RegisterBenchmark(name, run)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Arg(1000)
        ->Arg(10000)
        ->Arg(100000);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
