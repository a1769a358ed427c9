#include "Vyx/BaseCollection.h"

namespace Vyx {

BaseCollection::~BaseCollection() = default;

bool BaseCollection::iteratorMoreLeft(StrepIterator const& at) const { return static_cast<bool>(at.member); }
void BaseCollection::iteratorIncr(StrepIterator& at) const { at.member = nullptr; }
void BaseCollection::iteratorDelete(StrepIterator& at) const { at.member = nullptr; }
String8 BaseCollection::iteratorStrep(StrepIterator const&) const { return {}; }
StrepIterator BaseCollection::iteratorSpaceCopy(StrepIterator const& at) const { return at; }

} // namespace Vyx
