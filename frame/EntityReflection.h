// What the source of a generated entity type needs.

#pragma once

#include "frame/Define.h"
#include "frame/EntityFrame.h"
#include "frame/EntityGenericIf.h"
#include "frame/EntityType.h"
#include "frame/TypeRecord.h"
