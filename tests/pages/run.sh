#!/usr/bin/env bash
# run.sh WQSTAT DATA FOLDER: opens the pages of all analyses in a browser (see check_pages.mjs). What it needs is installed by scripts/test
# --all; without it the test is skipped, but fails where WQ_NEEDS_PROGRAMS is set.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

cannot()
{
    echo "$1"
    [ -z "${WQ_NEEDS_PROGRAMS-}" ] || exit 1
    exit 77
}

for program in node npm chromium pdftotext; do
    command -v "$program" >/dev/null || cannot "$program is missing"
done
mkdir -p "$3"
cp "$here/package.json" "$3"
(cd "$3" && npm install --no-audit --no-fund --no-package-lock --silent) || cannot "npm cannot install playwright-core and axe-core"
exec node "$here/check_pages.mjs" "$1" "$2" "$3"
