// Where the helper programs are that some file types need: decoders and encoders, each known by a component name.
// Threads  [any]
#pragma once
#include <string>

class LComponentFinder {
 public:
  virtual ~LComponentFinder() = default;
  virtual std::string Find(const std::string& name) = 0;  // path of an executable; empty: not installed
};

// The registered finder's answer; empty without a finder.
std::string LComponentGetPath(const std::string& name);
