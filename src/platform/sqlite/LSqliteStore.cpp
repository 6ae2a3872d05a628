#include "platform/sqlite/LSqliteStore.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>

namespace {

constexpr int kOpenTries = 100;
constexpr unsigned kOpenPauseUs = 20000;

LSqliteStore::Result ResultOf(int status) {
  switch (status & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return LSqliteStore::Result::Done;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return LSqliteStore::Result::Damaged;
    default:
      return LSqliteStore::Result::Failed;
  }
}

// While the table is looked for, an error in a statement means a database of something else.
LSqliteStore::Result ResultOfLooking(int status) {
  return (status & 0xff) == SQLITE_ERROR ? LSqliteStore::Result::Damaged : ResultOf(status);
}

std::string Column(sqlite3_stmt* statement, int column) {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
  return bytes ? std::string(bytes, std::size_t(sqlite3_column_bytes(statement, column))) : std::string();
}

}  // namespace

void LSqliteStore::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

LSqliteStore::LSqliteStore() = default;
LSqliteStore::~LSqliteStore() { Close(); }

void LSqliteStore::Close() {
  set_.reset();
  delete_.reset();
  version_.reset();
  sqlite3_close(database_);
  database_ = nullptr;
}

LSqliteStore::Result LSqliteStore::Open(const std::string& path) {
  Close();
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  int status = sqlite3_open_v2(path.c_str(), &database_, flags, nullptr);
  Result result = ResultOf(status);
  if (status == SQLITE_OK) {
    sqlite3_extended_result_codes(database_, 1);
    sqlite3_busy_timeout(database_, kBusyMs);
    result = PrepareFile();
  }
  struct stat info {};
  if (result == Result::Done && ::stat(path.c_str(), &info) != 0) result = Result::Failed;
  device_ = info.st_dev;
  inode_ = info.st_ino;
  return result;
}

LSqliteStore::Result LSqliteStore::PrepareFile() {
  // Several copies that start on a new file may refuse each other the change of its journal, without waiting.
  int status = SQLITE_BUSY;
  for (int tries = 0; (status & 0xff) == SQLITE_BUSY && tries < kOpenTries; ++tries) {
    if (tries) ::usleep(kOpenPauseUs);
    status = sqlite3_exec(database_, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  }
  if (ResultOf(status) != Result::Done) return ResultOf(status);
  constexpr const char* kTable =
      "PRAGMA synchronous=FULL;"
      "CREATE TABLE IF NOT EXISTS settings (id INTEGER PRIMARY KEY, name TEXT UNIQUE NOT NULL, value TEXT NOT NULL)";
  status = sqlite3_exec(database_, kTable, nullptr, nullptr, nullptr);
  if (ResultOf(status) != Result::Done) return ResultOfLooking(status);
  const Statement check = Prepare("PRAGMA quick_check", status);
  if (!check) return ResultOf(status);
  status = sqlite3_step(check.get());
  if (status != SQLITE_ROW) return ResultOf(status);
  if (Column(check.get(), 0) != "ok") return Result::Damaged;
  set_ = Prepare(
      "INSERT INTO settings (name, value) VALUES (?1, ?2) "
      "ON CONFLICT (name) DO UPDATE SET value = excluded.value WHERE value IS NOT excluded.value",
      status);
  if (set_) delete_ = Prepare("DELETE FROM settings WHERE name = ?1", status);
  if (delete_) version_ = Prepare("PRAGMA data_version", status);
  return ResultOfLooking(status);
}

bool LSqliteStore::IsStillAt(const std::string& path) const {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && info.st_dev == device_ && info.st_ino == inode_;
}

LSqliteStore::Statement LSqliteStore::Prepare(const char* text, int& status) {
  sqlite3_stmt* statement = nullptr;
  status = sqlite3_prepare_v3(database_, text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  return Statement(statement);
}

LSqliteStore::Result LSqliteStore::Execute(const char* text) {
  return ResultOf(sqlite3_exec(database_, text, nullptr, nullptr, nullptr));
}

// The status that ended it.
int LSqliteStore::ReadRows(const Statement& rows, Values& values) {
  int status = SQLITE_OK;
  while ((status = sqlite3_step(rows.get())) == SQLITE_ROW)
    values.insert_or_assign(Column(rows.get(), 0), Column(rows.get(), 1));
  return status;
}

LSqliteStore::Result LSqliteStore::ReadAll(Values& values) {
  if (!database_) return Result::Failed;
  int status = SQLITE_OK;
  const Statement rows = Prepare("SELECT name, value FROM settings", status);
  return ResultOf(rows ? ReadRows(rows, values) : status);
}

// Row by row, so that a broken page costs its own rows alone. Without the pragma a file that is too short is refused.
void LSqliteStore::Salvage(Values& values) {
  if (!database_) return;
  Execute("PRAGMA writable_schema=ON");
  int status = SQLITE_OK;
  const Statement row = Prepare("SELECT name, value FROM settings WHERE id = ?1", status);
  for (int id = 1; row && id <= kMaxSalvaged; ++id) {
    sqlite3_bind_int(row.get(), 1, id);
    ReadRows(row, values);
    sqlite3_reset(row.get());
  }
}

LSqliteStore::Result LSqliteStore::Run(const Statement& statement, const std::string& name, const std::string* value) {
  if (!statement) return Result::Failed;
  sqlite3_bind_text64(statement.get(), 1, name.data(), name.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (value) sqlite3_bind_text64(statement.get(), 2, value->data(), value->size(), SQLITE_STATIC, SQLITE_UTF8);
  const int status = sqlite3_step(statement.get());
  sqlite3_reset(statement.get());
  sqlite3_clear_bindings(statement.get());
  return ResultOf(status);
}

LSqliteStore::Result LSqliteStore::Set(const std::string& name, const std::string& value) {
  return Run(set_, name, &value);
}

LSqliteStore::Result LSqliteStore::Delete(const std::string& name) { return Run(delete_, name, nullptr); }

LSqliteStore::Result LSqliteStore::InOneChange(const std::function<Result()>& changes) {
  if (!database_) return Result::Failed;
  Result result = Execute("BEGIN IMMEDIATE");
  if (result != Result::Done) return result;
  result = changes();
  if (result == Result::Done) result = Execute("COMMIT");
  if (result != Result::Done) Execute("ROLLBACK");
  return result;
}

int LSqliteStore::ChangesOfOthers() {
  if (!version_) return 0;
  const int version = sqlite3_step(version_.get()) == SQLITE_ROW ? sqlite3_column_int(version_.get(), 0) : 0;
  sqlite3_reset(version_.get());
  return version;
}
