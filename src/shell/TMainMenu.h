// The menu bar as a table, with the keys that its items show.
// Threads  [main]
#pragma once
#include <span>
#include <vector>

#include "toolkit/LMenu.h"

namespace TMainMenu {
std::span<const LMenuItem> Items();
std::vector<LKeyToCommandMap> Keys();  // of the key table
}  // namespace TMainMenu
