// Files and paths. Every path is UTF-8 of any length. Data of the user is never half-written: WriteReplacing writes
// beside, flushes to disk and renames over.
// Units    sizes in bytes, times in whole seconds since 1970.
// Threads  [any]
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace LFile {

bool Exists(const std::string& path);
bool IsFolder(const std::string& path);
bool IsReadableFile(const std::string& path);  // a regular one: a pipe or a device would keep its reader waiting
std::optional<std::uint64_t> Size(const std::string& path);
std::int64_t ModificationTime(const std::string& path);  // 0 on failure
std::uint64_t FreeMegabytes(const std::string& folder);  // 0 on failure

// "a/b.wav": folder "a", name "b.wav", title "b", extension ".wav". A leading dot of a name is no extension.
std::string FolderFromPath(std::string_view path);
std::string NameFromPath(std::string_view path);
std::string TitleFromPath(std::string_view path);
std::string ExtensionFromPath(std::string_view path);
std::string MakePath(std::string_view folder, std::string_view name);
std::string Absolute(const std::string& path);

// A name fit for any file system: without "/ \ : * ? \" < > |" and bytes below 32, at most 200 bytes, never "", "." or
// "..".
std::string PreprocessName(std::string_view name);

bool CreateFolder(const std::string& path, unsigned mode);  // with its parents; true if it is there afterwards
bool Remove(const std::string& path);
std::vector<std::string> NamesInFolder(const std::string& folder);  // sorted, files only

std::optional<std::string> ReadAll(const std::string& path);
bool WriteReplacing(const std::string& path, std::string_view content);

// True if another open description holds a lock on the file (a growing recording, say).
bool IsLockedByOther(const std::string& path);

}  // namespace LFile

// Owns a descriptor.
class LFileHandle {
 public:
  LFileHandle() = default;
  explicit LFileHandle(int descriptor) : descriptor_(descriptor) {}
  ~LFileHandle() { Close(); }
  LFileHandle(LFileHandle&& other) noexcept : descriptor_(other.Release()) {}
  LFileHandle& operator=(LFileHandle&& other) noexcept;

  static LFileHandle OpenRead(const std::string& path);
  // Read and write, created if missing, under a shared lock that does not block (a file system without locks is taken
  // as it is).
  static LFileHandle OpenReadWriteShared(const std::string& path, bool truncate);

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }
  int Release();
  void Close();

  std::int64_t Read(void* bytes, std::size_t count);  // whole count unless the file ends; -1 on error
  bool Write(const void* bytes, std::size_t count);   // false: not everything was written
  std::int64_t ReadAt(void* bytes, std::size_t count, std::int64_t offset);
  bool WriteAt(const void* bytes, std::size_t count, std::int64_t offset);
  bool Seek(std::int64_t offset);
  std::int64_t Tell() const;
  std::int64_t Size() const;  // -1 on error
  bool Truncate(std::int64_t size);

 private:
  int descriptor_ = -1;
};
