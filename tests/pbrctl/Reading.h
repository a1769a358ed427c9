// Reading texts in tests: what is refused comes back as one line an error, `line:column text`.

#pragma once

#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/NativeWriter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace Pbrctl {

inline ConfigAst readFrom(std::string const& text, Diagnostics& diagnostics) {
  return readConfig(SourceText("test.conf", text), diagnostics);
}

inline std::string errorsOf(std::string const& text) {
  Diagnostics diagnostics("test.conf");
  readFrom(text, diagnostics);
  std::string lines;
  for (Diagnostics::Error const& e : diagnostics.sorted())
    lines += std::to_string(e.place.line) + ":" + std::to_string(e.place.column) + " " + e.text + "\n";
  return lines;
}

// REQUIRES: the text is right.
inline ConfigAst parsed(std::string const& text) {
  Diagnostics diagnostics("test.conf");
  ConfigAst config = readFrom(text, diagnostics);
  std::ostringstream errors;
  diagnostics.print(errors);
  EXPECT_EQ("", errors.str()) << text;
  return config;
}

inline std::string nativeText(ConfigAst const& config) {
  std::ostringstream out;
  writeNative(config, out);
  return out.str();
}

inline std::string jsonText(ConfigAst const& config) {
  std::ostringstream out;
  writeJson(config, out);
  return out.str();
}

// The statements that the writer makes of a text, without the comments between them.
inline std::string statementsOf(std::string const& text) {
  std::istringstream lines(nativeText(parsed(text)));
  std::string statements;
  for (std::string line; std::getline(lines, line);)
    if (line[0] != '!') statements += line + "\n";
  return statements;
}

} // namespace Pbrctl
