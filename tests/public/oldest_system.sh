#!/usr/bin/env bash
# Holds the libraries to the oldest system that the documentation names: oldest_system.sh PAGE LIBRARY...
# The page has a table row for each kind of symbol version, such as "| `GLIBC` | 2.34 | ...". A library must need no
# symbol of a later version, and none of a kind that has no row.
set -euo pipefail

page=$1
shift
failed=0
for library; do
  needed=$(objdump -T "$library" | sed -nE 's/.*\*UND\*.*[ (]([A-Z]+)_([0-9.]+)\)? .*/\1 \2/p' | sort -u)
  [ -n "$needed" ] || { echo "FAILED: $library needs nothing at all"; exit 1; }
  while read -r kind version; do
    most=$(sed -nE "s/^\| \`$kind\` \| ([0-9.]+) \|.*/\1/p" "$page")
    if [ "$(printf '%s\n' "$version" "${most:-0}" | sort -V | tail -n 1)" != "$most" ]; then
      echo "FAILED: $(basename "$library") needs ${kind}_$version, and the page says ${most:-nothing}:"
      objdump -T "$library" | grep -F "${kind}_$version)"
      failed=1
    fi
  done <<<"$needed"
  echo "$(basename "$library"): $(tr '\n' ',' <<<"$needed")"
done
exit "$failed"
