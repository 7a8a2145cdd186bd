#!/usr/bin/env bash
# Runs the example on an SQL database twice and compares what it prints, the count of its runs kept in a file:
# java_sql.sh PROGRAM [RUNNERS]. TORVAN_H2 is the database's jar, TORVAN_DRIVE the machine's drive.
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

printed() { # printed RUN
  printf '%s' '100000 rows in, 50000 names out
after the rollback: 100000 rows
org\.h2\.jdbc\.JdbcSQLSyntaxErrorException: Table "NOWHERE" not found; SQL statement:
insert into nowhere values \(1\) \[42102-.*\]
SQL state 42S02
run '"$1"' of this database'
}

expect 'first run' 0 "$(printed 1)" "$TORVAN_H2" "$TORVAN_DRIVE$folder/database"
expect 'second run' 0 "$(printed 2)" "$TORVAN_H2" "$TORVAN_DRIVE$folder/database"
expect 'no jar' 1 '.*nowhere\.jar is not there.*' nowhere.jar

finish
