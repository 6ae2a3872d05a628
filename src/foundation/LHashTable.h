// A map of named strings in sorted order: the fields of a track and of a file's tags.
// Units    an integer is decimal text; a boolean tests the first character, so that "" counts as its default.
// Threads  a value like any other: one thread at a time.
#pragma once
#include <map>
#include <string>
#include <string_view>

class LHashTable {
 public:
  // The pointer holds until the field changes.
  const char* GetParm(std::string_view name, const char* fallback = nullptr) const;
  void SetParmBottom(std::string_view name, std::string_view value);
  void SetString(std::string_view name, std::string_view value) { SetParmBottom(name, value); }
  void SetInt(std::string_view name, int value);
  void DeleteField(std::string_view name);

  void GetString(std::string_view name, std::string_view fallback, std::string& out) const;
  bool GetBool(std::string_view name, bool fallback) const;
  int GetInt(std::string_view name, int fallback) const;  // as far as the text is a number, held within the type

  bool IsEmpty() const { return fields_.empty(); }
  std::size_t GetCount() const { return fields_.size(); }
  auto begin() const { return fields_.begin(); }  // pairs of name and value
  auto end() const { return fields_.end(); }
  friend bool operator==(const LHashTable&, const LHashTable&) = default;

 private:
  std::map<std::string, std::string, std::less<>> fields_;
};
