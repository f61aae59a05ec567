#!/usr/bin/env bash
# Start-up cost: rowkeeper with no arguments against the SQLite 3 shell's
# "sqlite3 -version", side by side in one hyperfine run.
# Usage: bench/startup.sh [path/to/rowkeeper]   (needs hyperfine and sqlite3)
set -euo pipefail
rowkeeper=${1:-build/release/app/rowkeeper}
runs=${RUNS:-300}
json=$(mktemp)
trap 'rm -f "$json"' EXIT
hyperfine -N --warmup 20 --runs "$runs" --export-json "$json" \
  "$rowkeeper" "sqlite3 -version" >&2
python3 - "$json" <<'PY'
import json, sys
results = json.load(open(sys.argv[1]))["results"]
ours, theirs = results[0]["median"], results[1]["median"]
print(f"rowkeeper median {ours*1000:.3f} ms, sqlite3 -version median {theirs*1000:.3f} ms, ratio {ours/theirs:.2f}")
PY
