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

# Prints how many more cases than tests passed and failed: GoogleTest and pytest end with how many cases they ran. It reads the
# results as JUnit writes them, because any other ctest in the folder begins CTest's own log anew.
more_cases() {
  awk '
    /<testcase / { passed = failed = 0; is_failure = / status="fail"/ }
    /\[  PASSED  \] [0-9]+ test/ { passed = $(NF - 1) }
    /\[  FAILED  \] [0-9]+ test/ { failed = $4 }
    /[0-9]+ (passed|failed|error).* in [0-9.]+s/ {
      passed = failed = 0
      sub(/.*>/, "")
      for (word = 2; word <= NF; word++) {
        if ($word ~ /^passed,?$/) passed = $(word - 1)
        if ($word ~ /^(failed|errors?),?$/) failed += $(word - 1)
      }
    }
    /<\/testcase>/ {
      more_passed += is_failure || !passed ? passed : passed - 1
      more_failed += is_failure && failed ? failed - 1 : 0
    }
    END { print more_passed + 0, more_failed + 0 }'
}

# run_tests PRESET OPTIONS...: runs the tests of a preset and adds its result to the sums. Many tests only wait, so it runs
# four at a time for each processor, or as many as tests_at_a_time says.
run_tests() {
  preset=$1
  shift
  log=build/$preset/ctest.log
  results=$PWD/build/$preset/results.xml
  rm -f "$results"
  echo "== tests, $preset"
  status=0
  CLICOLOR=0 shown "tests, $preset" without_randomised_addresses ctest --test-dir "build/$preset" --output-on-failure \
    --progress --output-log "$log" --output-junit "$results" --test-output-size-passed 1000000 --no-tests=error --parallel "$((${tests_at_a_time:-4} * $(nproc)))" "$@" || status=$?
  ran=$(sed -n 's/^[0-9]*% tests passed, [0-9]* tests failed out of \([0-9]*\)$/\1/p' "$log")
  bad=$(sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of [0-9]*$/\1/p' "$log")
  if [ "$status" -ne 0 ] && [ "${bad:-0}" -eq 0 ]; then bad=$((${bad:-0} + 1)); fi
  failed=$((failed + ${bad:-0}))
  passed=$((passed + ${ran:-0} - ${bad:-0}))
  if [ -e "$results" ]; then
    more_cases <"$results" >"build/$preset/cases.sums"
    add_sums "build/$preset/cases.sums"
  fi
}

# Adds the sums in a file.
add_sums() {
  read -r other_passed other_failed <"$1"
  passed=$((passed + other_passed))
  failed=$((failed + other_failed))
}

sum_up() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}

# The tests make many small files for a moment, which takes half the time in memory, if there are 2 GiB left for them.
keep_temporary_files_in_memory() {
  free=$(df --output=avail --block-size=1M /dev/shm 2>/dev/null | tail -n 1)
  [ "${free:-0}" -ge 2048 ] || return 0
  TMPDIR=$(mktemp -d /dev/shm/usbdev-tests.XXXXXX)
  chmod 1777 "$TMPDIR"
  export TMPDIR
  trap 'rm -rf "$TMPDIR"' EXIT
  trap 'exit 143' TERM
}

# Builds and tests with the sanitizers; leaves its sums in a file.
test_with_sanitizers() {
  tests_at_a_time=2
  # shellcheck disable=SC2086 # a list of words
  if without_randomised_addresses ./dev build tsan $threaded_programs && ./dev build asan; then
    run_tests asan --label-exclude '^case$'
    run_tests tsan --label-regex threaded
  else
    failed=$((failed + 1))
  fi
  echo "$passed $failed" >build/sanitizers.sums
}

run_all_tests() {
  # What was freed is kept for a while, to notice who still uses it; many megabytes of it make every fork slow. Of each
  # piece of memory it keeps who allocated and freed it, up to three calls, because ten take 7 % more time; a test that is
  # run alone, by ctest in build/asan, keeps thirty.
  # Undefined behaviour is an illegal instruction, of which it prints the line.
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:quarantine_size_mb=8:malloc_context_size=3:handle_sigill=1
  export TSAN_OPTIONS=halt_on_error=1
  build release
  keep_temporary_files_in_memory
  # At the same time, because many tests only wait. An interrupt does not reach what runs in the background.
  rm -f build/sanitizers.sums
  : >build/sanitizers.log # "tail" may look before the tests have opened it
  trap 'kill 0' INT
  test_with_sanitizers >build/sanitizers.log 2>&1 &
  sanitizers=$!
  run_tests release --label-exclude '^(packages|kernel|kernel_short|pages|case)$'
  tail --lines=+1 --follow --pid="$sanitizers" build/sanitizers.log
  wait "$sanitizers" || true
  add_sums build/sanitizers.sums
  sum_up
}

# Runs the tests of the release build that take moments.
run_quick_tests() {
  build release
  run_tests release --label-exclude 'system|torture|kernel|pages|^case$'
  sum_up
}

# Runs the tests on the kernel of a guest.
run_kernel_tests() {
  build release
  run_tests release --label-regex '^kernel$'
  sum_up
}

# Compares the web pages with their kept pictures, and has them judged.
run_pages_tests() {
  build release
  run_tests release --label-regex '^pages$'
  sum_up
}

# Runs those tests of the release build whose names match; the cases of GoogleTest's programs have names too.
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
