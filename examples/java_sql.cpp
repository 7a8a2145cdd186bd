// A native program that works on an SQL database made in Java: H2, whose jar is the first argument.
//   java_sql h2.jar [DATABASE-FILE]
// Each run adds a row to the database file and says how many there are.
#include <torvan/Java.h>
#include <cstdio>

namespace java = torvan::java;

struct Connection {
  static constexpr char JavaName[] = "java/sql/Connection";
  static constexpr java::Method<Connection, java::Local<struct Statement>(std::string_view)> Prepare{
      "prepareStatement"};
  static constexpr java::Method<Connection, void(bool)> SetAutoCommit{"setAutoCommit"};
  static constexpr java::Method<Connection, void()> Commit{"commit"};
  static constexpr java::Method<Connection, void()> Rollback{"rollback"};
};
struct Statement {
  static constexpr char JavaName[] = "java/sql/PreparedStatement";
  static constexpr java::Method<Statement, void(jint, jint)> SetInt{"setInt"};
  static constexpr java::Method<Statement, void(jint, std::optional<std::string>)> SetString{"setString"};
  static constexpr java::Method<Statement, jint()> Update{"executeUpdate"};
  static constexpr java::Method<Statement, java::Local<struct Rows>()> Query{"executeQuery"};
};
struct Rows {
  static constexpr char JavaName[] = "java/sql/ResultSet";
  static constexpr java::Method<Rows, bool()> Next{"next"};
  static constexpr java::Method<Rows, jlong(jint)> GetLong{"getLong"};
  static constexpr java::Method<Rows, std::optional<std::string>(jint)> GetString{"getString"};
};
constexpr java::StaticMethod<java::Local<Connection>(std::string)> Connect{"java/sql/DriverManager", "getConnection"};

static void Update(const java::Local<Connection>& connection, std::string_view sql) {
  Statement::Update(Connection::Prepare(connection, sql));
}

static jlong Count(const java::Local<Connection>& connection, std::string_view sql) {
  const auto rows = Statement::Query(Connection::Prepare(connection, sql));
  return Rows::Next(rows) ? Rows::GetLong(rows, 1) : -1;
}

int main(int argc, char** argv) try {
  const java::Vm vm = java::StartVm(java::VmSettings().ClassPath({argc > 1 ? argv[1] : "h2.jar"}).MaximumHeap("256m"));
  const auto memory = Connect("jdbc:h2:mem:");
  Connection::SetAutoCommit(memory, false);
  Update(memory, "create table people (id int primary key, name varchar)");

  const auto insert = Connection::Prepare(memory, "insert into people values (?, ?)");
  for (jint id = 0; id < 100000; ++id) {
    Statement::SetInt(insert, 1, id);
    Statement::SetString(insert, 2, id % 2 == 0 ? std::optional("Zo\xC3\xAB " + std::to_string(id)) : std::nullopt);
    Statement::Update(insert);
  }
  Connection::Commit(memory);
  jlong named = 0;
  const auto rows = Statement::Query(Connection::Prepare(memory, "select name from people order by id"));
  for (jlong id = 0; Rows::Next(rows); ++id) named += Rows::GetString(rows, 1) == "Zo\xC3\xAB " + std::to_string(id);
  std::printf("%d rows in, %d names out\n", 100000, static_cast<int>(named));

  Update(memory, "delete from people");
  Connection::Rollback(memory);
  std::printf("after the rollback: %d rows\n", static_cast<int>(Count(memory, "select count(*) from people")));

  try {
    Update(memory, "insert into nowhere values (1)");
  } catch (const java::Error& error) {
    std::printf("%s\nSQL state %s\n", error.what(), java::Call<std::string>(error.Throwable(), "getSQLState").c_str());
  }
  const auto file = Connect("jdbc:h2:file:" + std::string(argc > 2 ? argv[2] : "./java_sql_example"));
  Update(file, "create table if not exists runs (id int auto_increment)");
  Update(file, "insert into runs default values");
  std::printf("run %d of this database\n", static_cast<int>(Count(file, "select count(*) from runs")));
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
