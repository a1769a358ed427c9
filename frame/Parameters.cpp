#include "frame/Parameters.h"

#include <string>

namespace frame {

void throwReinstantiated(Vyx::Name const& name, char const* parameter, Vyx::String8 const& asked,
                         Vyx::String8 const& current) {
  std::string text("Reinstantiating the entity with name ");
  text.append(name.view()).append(" where constructor parameter attribute _").append(parameter);
  text.append(" has a different value of ").append(asked.view()).append(" than the current value of ");
  text.append(current.view()).append(" not allowed");
  Vyx::throwNameInUseException(Vyx::String8(text));
}

} // namespace frame
