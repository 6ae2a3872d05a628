// Numbers in file headers: read from bytes in either order, and a header put together piece by piece.
// Units    bytes
// Threads  [any]; no allocation.
// Failure  a header that outgrows kCapacity loses its end; the largest one written has 86 bytes.
#pragma once
#include <cstdint>
#include <cstring>
#include <string_view>

inline std::uint16_t GetLe16(const unsigned char* at) { return static_cast<std::uint16_t>(at[0] | at[1] << 8); }
inline std::uint32_t GetLe32(const unsigned char* at) { return GetLe16(at) | std::uint32_t{GetLe16(at + 2)} << 16; }
inline std::uint16_t GetBe16(const unsigned char* at) { return static_cast<std::uint16_t>(at[0] << 8 | at[1]); }
inline std::uint32_t GetBe32(const unsigned char* at) { return std::uint32_t{GetBe16(at)} << 16 | GetBe16(at + 2); }
inline bool IsId(const unsigned char* at, const char* four) { return std::memcmp(at, four, 4) == 0; }

class LHeaderBytes {
 public:
  static constexpr int kCapacity = 96;

  LHeaderBytes& Text(std::string_view text) {
    for (const char c : text) Byte(static_cast<unsigned char>(c));
    return *this;
  }
  LHeaderBytes& Byte(unsigned value) {
    if (size_ < kCapacity) bytes_[size_++] = static_cast<unsigned char>(value);
    return *this;
  }
  LHeaderBytes& Le16(unsigned value) { return Byte(value & 255).Byte(value >> 8 & 255); }
  LHeaderBytes& Le32(std::uint32_t value) { return Le16(value & 0xffff).Le16(value >> 16); }
  LHeaderBytes& Be16(unsigned value) { return Byte(value >> 8 & 255).Byte(value & 255); }
  LHeaderBytes& Be32(std::uint32_t value) { return Be16(value >> 16).Be16(value & 0xffff); }

  const unsigned char* Data() const { return bytes_; }
  int Size() const { return size_; }

 private:
  unsigned char bytes_[kCapacity] = {};
  int size_ = 0;
};
