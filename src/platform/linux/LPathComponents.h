// Finds helper programs by the name of their component: first in the folder "Components" beside the user's data, then
// along PATH.
// Threads  [any]
#pragma once
#include "foundation/LComponentFinder.h"

class LPathComponents final : public LComponentFinder {
 public:
  std::string Find(const std::string& name) override;
};
