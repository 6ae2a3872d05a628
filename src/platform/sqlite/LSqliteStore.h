// One table of names and values in an SQLite file. Each change is on the disk before it returns.
// Threads  one at a time; other processes may have the same file open.
// Failure  every operation returns what became of it; a file that is no such table, or a broken one, is Damaged.
#pragma once
#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

class LSqliteStore {
 public:
  static constexpr int kMaxSalvaged = 10000;  // rows that are looked for in a damaged file
  static constexpr int kBusyMs = 5000;        // how long a change waits for another process
  enum class Result { Done, Damaged, Failed };

  LSqliteStore();
  ~LSqliteStore();
  LSqliteStore(const LSqliteStore&) = delete;
  LSqliteStore& operator=(const LSqliteStore&) = delete;

  Result Open(const std::string& path);  // creates what is missing, and tests the whole file
  void Close();
  bool IsReady() const { return version_ != nullptr; }  // a file that is not can still be read as far as it goes
  bool IsStillAt(const std::string& path) const;        // false: the file was removed or replaced

  using Values = std::map<std::string, std::string, std::less<>>;
  Result ReadAll(Values& values);
  void Salvage(Values& values);                                   // adds what can be read of a damaged file
  Result Set(const std::string& name, const std::string& value);  // writes nothing if it is the value already
  Result Delete(const std::string& name);
  Result InOneChange(const std::function<Result()>& changes);
  int ChangesOfOthers();  // differs from the last answer once another process has changed the file

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  Result PrepareFile();
  Result Execute(const char* text);
  int ReadRows(const Statement& rows, Values& values);
  Statement Prepare(const char* text, int& status);
  Result Run(const Statement& statement, const std::string& name, const std::string* value);

  sqlite3* database_ = nullptr;
  Statement set_, delete_, version_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};
