# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# Progress of work that takes minutes.

# Copies the input, but of the lines that count steps, ninja's "[12/300] ..." and ctest's "12/300 Test ... Passed", prints
# only ten. The last line of the input is the status to return.
every_tenth() {
  reached=0
  while IFS= read -r line; do
    case $line in
      'ended with '*) return "${line#ended with }" ;;
      '['*/*'] '* | *[0-9]/*' Test '*' Passed '*) ;;
      ' '*' Start '* | 'ninja: Entering '* | 'ninja: no work '*) continue ;;
      *) printf '%s\n' "$line"; continue ;;
    esac
    count=${line%%/*}
    total=${line#*/}
    count=${count##*[!0-9]}
    total=${total%%[!0-9]*}
    [ "$((count * 10 / total))" -gt "$reached" ] || continue
    reached=$((count * 10 / total))
    echo "$1: $count of $total"
  done
}

# shown LABEL COMMAND...: runs a command that counts its steps. A terminal shows the command's own output, a log gets ten
# lines.
shown() {
  label=$1
  shift
  if [ -t 1 ]; then "$@"; return; fi
  {
    ended=0
    "$@" 2>&1 || ended=$?
    echo "ended with $ended"
  } | every_tenth "$label"
}
