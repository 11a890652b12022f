#!/usr/bin/env bash
# run.sh WQSTAT DATA FOLDER: opens the pages of all analyses in a browser (see check_pages.mjs). What it needs is installed by scripts/test
# --all; without it the test is skipped.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

for program in node npm chromium pdftotext; do
    command -v "$program" >/dev/null || { echo "$program is missing"; exit 77; }
done
mkdir -p "$3"
cp "$here/package.json" "$3"
(cd "$3" && npm install --no-audit --no-fund --no-package-lock --silent) || { echo "npm cannot install playwright-core and axe-core"; exit 77; }
exec node "$here/check_pages.mjs" "$1" "$2" "$3"
