#!/usr/bin/env bash
# Fails, and names them, if processes of this test run are still there. A hub whose last tool has
# just gone takes up to four seconds to end, which is no fault.
set -euo pipefail
. "$(dirname "$0")/../script/common.sh"

[ -n "${JUNTORA_RUN:-}" ] || exit 77
for _ in {1..80}; do
    left=$(marked_processes "JUNTORA_RUN=$JUNTORA_RUN")
    [ -n "$left" ] || exit 0
    sleep 0.1
done
echo "These were left behind by the tests before:"
for pid in $left; do
    printf '%s %s\n' "$pid" "$(tr '\0' ' ' <"/proc/$pid/cmdline")"
done
exit 1
