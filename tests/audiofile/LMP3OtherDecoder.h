// Another decoder of Layer III to compare with.
#pragma once
#include <dlfcn.h>

#include <string>
#include <vector>

// libmpg123 where it is installed: whole files as floats.
class LMP3OtherDecoder {
 public:
  LMP3OtherDecoder() : library_(::dlopen("libmpg123.so.0", RTLD_NOW)) {}
  LMP3OtherDecoder(const LMP3OtherDecoder&) = delete;
  LMP3OtherDecoder& operator=(const LMP3OtherDecoder&) = delete;
  ~LMP3OtherDecoder() {
    if (library_) ::dlclose(library_);
  }
  bool IsThere() const { return library_ != nullptr; }

  std::vector<float> Decode(const std::string& path, bool gapless) const {
    constexpr int kAddFlags = 2, kRemoveFlags = 13, kForceFloatQuiet = 0x400 | 0x20, kGapless = 0x40;
    void* const decoder = Call<void*(const char*, int*)>("mpg123_new")("generic", nullptr);
    const auto set = Call<int(void*, int, long, double)>("mpg123_param");
    set(decoder, kAddFlags, kForceFloatQuiet, 0);
    set(decoder, gapless ? kAddFlags : kRemoveFlags, kGapless, 0);
    Call<int(void*, const char*)>("mpg123_open")(decoder, path.c_str());
    long rate = 0;
    int channels = 0, encoding = 0;
    Call<int(void*, long*, int*, int*)>("mpg123_getformat")(decoder, &rate, &channels, &encoding);
    std::vector<float> samples, block(4096);
    std::size_t bytes = 0;
    const auto read = Call<int(void*, void*, std::size_t, std::size_t*)>("mpg123_read");
    while (read(decoder, block.data(), block.size() * sizeof(float), &bytes) == 0 || bytes > 0)
      samples.insert(samples.end(), block.begin(), block.begin() + std::ptrdiff_t(bytes / sizeof(float)));
    Call<void(void*)>("mpg123_delete")(decoder);
    return samples;
  }

 private:
  template <class Function>
  Function* Call(const char* name) const {
    return reinterpret_cast<Function*>(::dlsym(library_, name));
  }
  void* library_;
};
