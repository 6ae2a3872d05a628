// Fetches a file from a web server.
// Threads  [worker]
// Failure  a result other than 0; `file` may then be there in part.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

class LHttpFetcher {
 public:
  virtual ~LHttpFetcher() = default;
  virtual int Fetch(LProcessInterface& process, const std::string& url, const std::string& file) = 0;
};
