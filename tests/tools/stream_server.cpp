// A streaming server for tests: listens on a UNIX socket, takes one connection, keeps what it gets.
//   stream_server SOCKET OUT all|stall|die       stall: reads nothing; die: leaves after 100000 bytes
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string_view>

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string_view mode = argv[3];
  ::alarm(30);  // never outlives its test
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, argv[1], sizeof address.sun_path - 1);
  ::unlink(argv[1]);
  const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
  if (::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || ::listen(listener, 1) != 0)
    return 1;
  const int client = ::accept(listener, nullptr, nullptr);
  if (client < 0) return 1;
  if (mode == "stall") {
    ::pause();
    return 0;
  }
  std::FILE* out = std::fopen(argv[2], "wb");
  if (!out) return 1;
  char bytes[65536];
  long total = 0;
  while (mode == "all" || total < 100000) {
    const auto got = ::read(client, bytes, sizeof bytes);
    if (got <= 0) break;
    total += got;
    std::fwrite(bytes, 1, std::size_t(got), out);
    std::fflush(out);
  }
  std::fclose(out);
  ::unlink(argv[1]);
  return 0;
}
