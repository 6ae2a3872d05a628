#include "foundation/LComponentFinder.h"

#include "foundation/LPlatform.h"

std::string LComponentGetPath(const std::string& name) {
  LComponentFinder* finder = LPlatform::Components();
  return finder && !name.empty() ? finder->Find(name) : "";
}
