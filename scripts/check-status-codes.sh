#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Compares docs/status-codes.md with the table of codes in the library. With --update the page is
# written anew.
set -euo pipefail
cd "$(dirname "$0")/.."
page=docs/status-codes.md
page_text() {
  cat <<'TEXT'
# Status codes

Every operation that can fail answers a `MCCommon::MCStatus`: a code, a severity and up to six
data. Each code has one fixed severity; the numbers are the interface to the host. Codes 101 to 126
belong to the XML side, 301 to 319 to the regression side, 1 to both. There is no code 317.

The library holds no texts: a host keys its own messages on the code, and may start from these,
which stand in `regression/frame/mcstatuscodes.inc` (this page is made from it by
`scripts/check-status-codes.sh --update`).

With code 316, discrete datum 1 is the position in the record and scale datum 1 the value. With code
305, discrete datum 0 is the number of parameters and discrete datum 1 the limit, where there is one.

| Code | Name | Severity | Meaning |
|---|---|---|---|
TEXT
  c++ -E -P -Ishared/cpp/src -x c++ - <<'CODE' |
#define MC_STATUS_CODE(code, name, severity, text) | code | `name` | severity | text |
#include "regression/frame/mcstatuscodes.inc"
CODE
    grep '^|' |
    sed -E 's/\| ERROR \|/| error |/; s/\| WARNING \|/| warning |/; s/"//g; s/ +/ /g'
}
if [ "${1:-}" = --update ]; then
  page_text >"$page"
else
  diff -u "$page" <(page_text)
fi
