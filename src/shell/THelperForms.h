// The internal forms of the command line, in which the program starts something for another program and ends.
// Threads  [main]
#pragma once
#include <optional>
#include <string>
#include <vector>

// Arguments without the program's name. The exit status, or nothing if this is an ordinary start.
std::optional<int> RunHelperForm(const std::vector<std::string>& arguments);
