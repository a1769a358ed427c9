// What the session copy traces while an object of one of these classes lives.

#pragma once

#include "CopyTrace.h"

#include <string>
#include <vector>

// Levels of the facility that are on, and their statements as "level: text", taken from the sink.
class Traces {
public:
  explicit Traces(std::vector<unsigned> levels) : levels_(std::move(levels)) {
    Vyx::traceSinkIs([this](Vyx::TraceHandle const& facility, unsigned level, std::string const& text) {
      lines_.push_back(std::string(facility.name()) + ' ' + std::to_string(level) + ": " + text);
    });
    set(true);
  }
  ~Traces() {
    set(false);
    Vyx::traceSinkIs(nullptr);
  }
  Traces(Traces const&) = delete;
  Traces& operator=(Traces const&) = delete;

  std::vector<std::string> take() { return std::exchange(lines_, {}); }

private:
  void set(bool on) {
    for (unsigned level : levels_) Vyx::traceLevelIs("PbrCopy", level, on);
  }

  std::vector<unsigned> levels_;
  std::vector<std::string> lines_;
};

// Every statement, whatever the switches say, as "module function text".
class Coverage {
public:
  Coverage() { Vyx::coverageStream_ = &stream_; }
  ~Coverage() { Vyx::coverageStream_ = nullptr; }
  Coverage(Coverage const&) = delete;
  Coverage& operator=(Coverage const&) = delete;

  // The lines without the number of the source line.
  std::vector<std::string> take() {
    std::istringstream all(stream_.str());
    stream_.str({});
    std::vector<std::string> lines;
    for (std::string line; std::getline(all, line);) {
      std::size_t const colon = line.find(':');
      lines.push_back(line.erase(colon, line.find(' ', colon) - colon));
    }
    return lines;
  }

private:
  std::ostringstream stream_;
};
