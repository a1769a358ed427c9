// Traces: a facility has a name, a switch for each of ten levels, and costs two byte tests and a pointer test
// while it is quiet.

#pragma once

#include "Vyx/String8.h"

#include <array>
#include <functional>
#include <iosfwd>
#include <sstream>

namespace Vyx {

// Levels are 0 to kLevels - 1 throughout; a handle lives until the process ends.
class TraceHandle {
public:
  static constexpr unsigned kLevels = 10;

  // Enters the facility in the table of facilities, where traceLevelIs finds it, also by name before it
  // exists.
  TraceHandle(char const* name, bool enabled);

  char const* name() const { return name_; }
  bool enabled() const { return enabled_; }
  bool level(unsigned level) const { return levels_[level]; }
  void enabledIs(bool enabled) { enabled_ = enabled; }
  void levelIs(unsigned level, bool on) { levels_[level] = on; }

private:
  char const* name_;
  bool enabled_;
  std::array<bool, kLevels> levels_{};
};

// Where every statement goes, whatever the switches say, while it isn't null; for finding what is never
// traced.
extern std::ostream* coverageStream_;

// Turns one level of a facility on or off. A facility that doesn't exist yet takes the setting when it is
// made.
void traceLevelIs(std::string const& facility, unsigned level, bool on);

// Where statements go that are on; the default writes "facility level: text" lines to the standard error
// stream.
using TraceSink = std::function<void(TraceHandle const& facility, unsigned level, std::string const& text)>;
void traceSinkIs(TraceSink sink);

// Hands a composed statement on: to the sink if it is `on`, to the coverage stream if there is one.
void traceHelper(TraceHandle const& facility, char const* file, std::ostringstream const& text,
                 unsigned level, bool on, char const* module, int line, char const* function);

// Whether a statement of that level is to be composed.
inline bool traceWanted(TraceHandle const& facility, unsigned level) {
  return (facility.enabled() && facility.level(level)) || coverageStream_;
}

// Composes the parts and hands them on. Kept out of whoever might trace.
template <class... Parts>
[[gnu::noinline, gnu::cold]] void trace(TraceHandle const& facility, unsigned level, char const* module,
                                        int line, char const* function, Parts const&... parts) {
  std::ostringstream text;
  text.precision(12);
  ((text << parts), ...);
  traceHelper(facility, "<unknown>", text, level, facility.enabled() && facility.level(level), module, line,
              function);
}

} // namespace Vyx
