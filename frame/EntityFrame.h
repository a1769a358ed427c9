// What the header of a generated entity type needs.

#pragma once

#include "Vyx/ValidPtr.h"
#include "frame/Attribute.h"
#include "frame/ChildCollection.h"
#include "frame/OwnedChild.h"
#include "frame/Queue.h"
#include "frame/ReactorOn.h"
#include "frame/Scalar.h"
#include "frame/ValueCollection.h"
