// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Animal.h"
#include "Zoo/Bird.h"
#include "Zoo/Cage.h"
#include "Zoo/Diet.h"
#include "Zoo/Keeper.h"
#include "Zoo/Kitchen.h"
#include "Zoo/Menu.h"
#include "Zoo/Office.h"
#include "Zoo/Weight.h"
