// From the JSON of a tree of entities (EntityJson.h) to the tree, through reflection alone.

#pragma once

#include "Vyx/GenericIf.h"
#include "pbrctl/SourceText.h"

namespace Pbrctl {

// RETURNS a tree whose root is of that type; null, with the reasons and their places in `diagnostics`, when
// the text is refused.
Vyx::Ptr<Vyx::Entity> readEntityDocument(SourceText const& source, Vyx::VyxType const& type,
                                         Diagnostics& diagnostics);

} // namespace Pbrctl
