#include "console/LNamedPipe.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"

void LNamedPipe::Close() {
  const int descriptor = descriptor_.exchange(-1);
  if (descriptor >= 0) ::close(descriptor);
  broken_ = false;
}

std::string LNamedPipeRef::MakeFilePath(const std::string& name) {
  const LFolders& folders = LPlatform::Folders();
  const std::string folder = name == "tavid" ? folders.GetSharedDataFolderApp() : folders.GetUserDataFolderApp();
  return LFile::MakePath(folder, ".spipe." + name);
}

bool LNamedPipeRef::Open(LNamedPipe& pipe, const std::string& name) {
  pipe.Close();
  const std::string path = MakeFilePath(name);
  sockaddr_un address{};
  if (path.size() >= kMaxPathBytes || path.size() >= sizeof address.sun_path || !LFile::Exists(path)) return false;
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  if (descriptor < 0) return false;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  ::fcntl(descriptor, F_SETFL, O_NONBLOCK);
  if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ::close(descriptor);
    return false;
  }
  pipe.descriptor_ = descriptor;
  return true;
}
