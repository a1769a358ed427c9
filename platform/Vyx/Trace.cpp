#include "Vyx/Trace.h"

#include <iostream>
#include <map>

namespace Vyx {

namespace {

// Facilities by name, and the levels asked for before a facility was made. Kept until the process ends.
struct Facilities {
  std::map<std::string, TraceHandle*> byName;
  std::map<std::string, std::array<bool, TraceHandle::kLevels>> asked;
  TraceSink sink;
};

Facilities& facilities() {
  static auto* all = new Facilities;
  return *all;
}

} // namespace

std::ostream* coverageStream_ = nullptr;

TraceHandle::TraceHandle(char const* name, bool enabled) : name_(name), enabled_(enabled) {
  facilities().byName[name] = this;
  auto asked = facilities().asked.find(name);
  if (asked == facilities().asked.end()) return;
  levels_ = asked->second;
  for (bool on : levels_) enabled_ = enabled_ || on;
}

void traceLevelIs(std::string const& facility, unsigned level, bool on) {
  if (level >= TraceHandle::kLevels) return;
  facilities().asked[facility][level] = on;
  auto found = facilities().byName.find(facility);
  if (found == facilities().byName.end()) return;
  found->second->levelIs(level, on);
  if (on) found->second->enabledIs(true);
}

void traceSinkIs(TraceSink sink) { facilities().sink = std::move(sink); }

void traceHelper(TraceHandle const& facility, char const*, std::ostringstream const& text, unsigned level,
                 bool on, char const* module, int line, char const* function) {
  if (coverageStream_)
    *coverageStream_ << module << ':' << line << ' ' << function << ' ' << text.str() << '\n';
  if (!on) return;
  if (facilities().sink)
    facilities().sink(facility, level, text.str());
  else
    std::cerr << facility.name() << ' ' << level << ": " << text.str() << '\n';
}

} // namespace Vyx
