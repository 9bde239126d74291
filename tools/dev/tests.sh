# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# Runs the tests, and adds up the results of several runs.

# The programs with tests labelled "threaded"; the thread sanitizer's build needs only these.
threaded_programs='contract_lock torture_threads torture_threads_on_host'

passed=0
failed=0

# With randomised addresses the thread sanitizer sometimes cannot place its memory.
without_randomised_addresses() {
  if setarch "$(uname -m)" -R true 2>/dev/null; then setarch "$(uname -m)" -R "$@"; else "$@"; fi
}

# run_tests PRESET OPTIONS...: runs the tests of a preset and adds its result to the sums. Many tests only wait, so it runs
# four at a time for each processor.
run_tests() {
  preset=$1
  shift
  log=build/$preset/ctest.log
  echo "== tests, $preset"
  status=0
  CLICOLOR=0 shown "tests, $preset" without_randomised_addresses ctest --test-dir "build/$preset" --output-on-failure \
    --progress --output-log "$log" --no-tests=error --parallel "$((4 * $(nproc)))" "$@" || status=$?
  ran=$(sed -n 's/^[0-9]*% tests passed, [0-9]* tests failed out of \([0-9]*\)$/\1/p' "$log")
  bad=$(sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of [0-9]*$/\1/p' "$log")
  if [ "$status" -ne 0 ] && [ "${bad:-0}" -eq 0 ]; then bad=$((${bad:-0} + 1)); fi
  failed=$((failed + ${bad:-0}))
  passed=$((passed + ${ran:-0} - ${bad:-0}))
}

sum_up() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}

build_for_sanitizers() {
  # shellcheck disable=SC2086 # a list of words
  without_randomised_addresses ./dev build tsan $threaded_programs
  build asan
}

run_all_tests() {
  # What was freed is kept for a while, to notice who still uses it; many megabytes of it make every fork slow.
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:quarantine_size_mb=8
  export UBSAN_OPTIONS=print_stacktrace=1
  export TSAN_OPTIONS=halt_on_error=1
  build release
  build_for_sanitizers >build/sanitizers.log 2>&1 & # at the same time, because the tests mostly wait
  sanitizer_builds=$!
  run_tests release --label-exclude '^(packages|kernel|kernel_short)$'
  echo '== builds for the sanitizers'
  tail --lines=+1 --follow --pid="$sanitizer_builds" build/sanitizers.log
  if wait "$sanitizer_builds"; then
    run_tests asan
    run_tests tsan --label-regex threaded
  else
    failed=$((failed + 1))
  fi
  sum_up
}

# Runs the tests of the release build that take moments.
run_quick_tests() {
  build release
  run_tests release --label-exclude 'system|torture|kernel'
  sum_up
}

# Runs the tests on the kernel of a guest.
run_kernel_tests() {
  build release
  run_tests release --label-regex '^kernel$'
  sum_up
}

# Runs those tests of the release build whose names match.
run_matching_tests() {
  build release
  ctest --test-dir build/release --show-only --tests-regex "$1" | grep -q 'Test *#' ||
    { echo "dev: no test matches '$1'; 'ctest --test-dir build/release --show-only' lists them" >&2; exit 1; }
  run_tests release --tests-regex "$1"
  sum_up
}

# Runs the tests that call the library on another architecture, in an emulator.
run_tests_on() {
  is_foreign "$1" || { echo "dev: '$1' is not an architecture; there are armhf and arm64" >&2; exit 2; }
  build "$1" tests/abi/all tests/contract/all tests/cpp/all tests/python/all tests/unit/all
  run_tests "$1" --tests-regex '^(abi|contract|cpp|python|unit)[._]'
  sum_up
}

# The tests labelled "torture" do more, and write their figures, when this variable names a file for them.
torture() {
  build release
  USBDEV_TORTURE=$PWD/build/torture.txt
  export USBDEV_TORTURE
  : >"$USBDEV_TORTURE"
  run_tests release --label-regex torture --tests-regex "${1:-.}"
  sort "$USBDEV_TORTURE"
  sum_up
}
