// The waves that decoded tracks are kept in: their names, whether one is there, and taking them away.
// Law      a cached wave is called after its source and the second of its last change, so that a changed file is decoded
//          anew; without a cache it is called after the source's name and lies in the folder "Temp" until the program
//          ends. Beside each lies a side file (".src") that tells its source. Two sources of one name and second: the
//          later one's wave has "-" and eight digits of its path's hash in its name.
// Units    times in seconds since 1970
// Threads  [any]
// Failure  false, or an empty path.
#pragma once
#include <functional>
#include <string>

namespace LFileCache {

std::string GetCacheFolder();  // the user's choice, else the folder "Cache" of the program
std::string GetTempFolder();

std::string MakeCachedPath(const std::string& source);
bool IsCachePath(const std::string& path, const std::string& original);

// MakeCachedPath, and the side file is written, so that the name is taken. Empty: the folder cannot be written.
std::string ClaimCachedPath(const std::string& source);
void Remove(const std::string& cached);  // with its side file

enum State { Missing, Complete, Growing };
// A wave that nobody writes any more and that never got its final header is removed, and missing.
State GetState(const std::string& cached, const std::string& source);

// Deletes what the program put there: waves with a side file, and in its own two folders all waves. Never folders, never
// through links, nothing that `isInUse`.
using InUse = std::function<bool(const std::string& path)>;
int ClearFolder(const std::string& folder, const InUse& isInUse);  // files removed
// Pictures and copies in the program's temporary folder that an earlier run left behind more than a week ago.
int SweepTempFolder();

}  // namespace LFileCache
