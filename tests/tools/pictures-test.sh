#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# docs/pictures/make.py makes the pictures of README.md, and those in the tree are what it makes, but for times and rates.
# usage: pictures-test.sh PYTHON FOLDER-OF-THE-PICTURES FOLDER-OF-VANTO-CL
set -u
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" "$2/make.py" "$3" "$folder" || exit 1
# Where a line ends depends on how long they are.
without_volatile() {
    sed -E 's/<[^>]*>//g' "$1" | tr -s '[:space:]' ' ' | tr '$' '\n' |
        sed -E 's/[0-9.]+ (ms|s)\b/TIME/g; s/[0-9.]+ (frames|MB)\/s/RATE/g; s/[0-9]+ dropped/N dropped/'
}
diff <(without_volatile "$2/session.svg") <(without_volatile "$folder/session.svg") || {
    echo "the session is another one now: docs/pictures/make.py $3"
    exit 1
}
head -c 24 "$2/image.png" | cmp - <(head -c 24 "$folder/image.png")
