#include "audiofile/tags/LOggTags.h"

#include "audiofile/LHeaderBytes.h"
#include "audiofile/tags/LVorbisComment.h"

namespace {

constexpr int kPageHeaderBytes = 27, kMaxSegments = 255, kMaxPageBytes = kPageHeaderBytes + 256 * kMaxSegments;
constexpr std::size_t kMaxPacketBytes = 32 << 20;  // pictures stand in comments as letters

struct Page {
  std::uint32_t serial;
  bool first;  // of its stream
  int segments;
  unsigned char lacing[kMaxSegments];  // the bytes of each segment; 255: the packet goes on
  LTagBlock body;
  std::int64_t end;
};

bool GetPage(const LTagBlock& file, std::int64_t at, Page& page) {
  unsigned char header[kPageHeaderBytes];
  if (!file.Get(header, sizeof header, at) || !IsId(header, "OggS")) return false;
  page.serial = GetLe32(header + 14);
  page.first = header[5] & 2;
  page.segments = header[26];
  at += kPageHeaderBytes;
  if (!file.Get(page.lacing, std::size_t(page.segments), at)) return false;
  at += page.segments;
  int bytes = 0;
  for (int i = 0; i < page.segments; ++i) bytes += page.lacing[i];
  page.body = file.Part(at, bytes);
  page.end = at + bytes;
  return true;
}

std::optional<LOggStream> StreamOf(const Page& page) {
  unsigned char id[16];
  if (!page.first || !page.body.Get(id, sizeof id, 0)) return std::nullopt;
  if (std::memcmp(id, "\x01vorbis", 7) == 0) return LOggStream{page.serial, GetLe32(id + 12), 0, 7, "\x03vorbis"};
  if (std::memcmp(id, "OpusHead", 8) == 0) return LOggStream{page.serial, 48000, GetLe16(id + 10), 8, "OpusTags"};
  return std::nullopt;
}

// Puts a stream's second packet together.
class CommentPacket {
 public:
  void Add(const Page& page) {
    const std::string body = page.body.Read();
    std::size_t at = 0;
    for (int i = 0; i < page.segments && !IsComplete(); ++i) {
      if (number_ == 1 && at < body.size()) bytes_.append(body, at, page.lacing[i]);
      at += page.lacing[i];
      if (page.lacing[i] < kMaxSegments) ++number_;
    }
  }
  bool IsComplete() const { return number_ > 1 || bytes_.size() > kMaxPacketBytes; }
  const std::string& GetBytes() const { return bytes_; }

 private:
  int number_ = 0;  // of the packet at hand
  std::string bytes_;
};

std::optional<LOggStream> FindComment(const LTagBlock& file, CommentPacket& packet) {
  std::optional<LOggStream> stream;
  Page page;
  std::int64_t at = 0;
  for (int piece = 0; piece < LTagBlock::kMaxPieces && GetPage(file, at, page); ++piece, at = page.end) {
    if (!stream) stream = StreamOf(page);
    if (stream && page.serial == stream->serial) packet.Add(page);
    if (packet.IsComplete()) break;
  }
  return stream;
}

}  // namespace

std::optional<std::int64_t> GetOGGAudioLength(const LTagBlock& file, const LOggStream& stream) {
  constexpr std::int64_t kMaxFrames = std::int64_t{1} << 52;  // a damaged position; also keeps the product in range
  const LTagBlock end = file.Part(file.GetSize() - 2 * kMaxPageBytes);
  const std::string bytes = end.Read();
  const auto* const start = reinterpret_cast<const unsigned char*>(bytes.data());
  for (std::size_t at = bytes.rfind("OggS"); at != std::string::npos; at = at ? bytes.rfind("OggS", at - 1) : at - 1) {
    if (bytes.size() - at < kPageHeaderBytes || GetLe32(start + at + 14) != stream.serial) continue;
    const std::uint64_t position = GetLe32(start + at + 6) | std::uint64_t{GetLe32(start + at + 10)} << 32;
    if (position == UINT64_MAX) continue;  // no packet ends on this page
    if (position > kMaxFrames || position < stream.skipFrames || stream.rate == 0) return std::nullopt;
    return std::int64_t(position - stream.skipFrames) * 1000 / stream.rate;
  }
  return std::nullopt;
}

bool ReadTagsOGG(LAudioTagData& tags, const LTagBlock& file) {
  CommentPacket packet;
  const auto stream = FindComment(file, packet);
  if (!stream) return false;
  const std::string_view bytes = packet.GetBytes();
  const std::string_view header(stream->commentHeader, std::size_t(stream->commentHeaderBytes));
  const bool found = bytes.substr(0, header.size()) == header &&
                     ReadVorbisComment(tags, LTagBlock(bytes.substr(header.size())), {}) && packet.IsComplete();
  if (const auto lengthMs = GetOGGAudioLength(file, *stream)) tags.SetNumber("LENGTH", *lengthMs, true);
  return found;
}
