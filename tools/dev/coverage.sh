# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# What the library's own tests run of it, and which mistakes in it they find.

# Runs the programs that call the library. Those of the contract tests load it, so they are taken as they are; those of
# the unit tests contain it, so they are built with it.
run_with_coverage() {
  find build/release/tests/contract build/coverage/tests/unit -type f -perm -u+x \( -name 'contract_*' -o -name 'unit_*' \) |
    while IFS= read -r program; do
      LD_LIBRARY_PATH=$PWD/build/coverage "$program" --gtest_brief=1 >build/coverage/program.log 2>&1 ||
        { cat build/coverage/program.log; exit 1; }
    done
}

# covered OPTIONS...: prints the files that are not covered completely, and then the sums. Branches that the compiler
# makes for exceptions do not count, because the library has none.
covered() {
  (
    cd build/coverage
    gcovr --root ../.. --filter ../../src/ --object-directory . --exclude-throw-branches --exclude-unreachable-branches \
      "$@" src
  ) >build/coverage/report.txt || status=1
  sed -n -e '/ 100% *$/d' -e '/ --% *$/d' -e '/^src/p' -e '/^[a-z]*: /p' build/coverage/report.txt
}

coverage() {
  status=0
  build release tests/contract/all
  [ ! -d build/coverage ] || find build/coverage -name '*.gcda' -delete
  build coverage usbdevlib tests/unit/all
  echo '== tests, coverage'
  run_with_coverage
  covered --fail-under-line 100
  covered --fail-under-branch 99 --branches --print-summary
  grep -q '^functions: 100' build/coverage/report.txt || status=1
  return "$status"
}

mutate() {
  build release tests/contract/all tests/unit/all tests/host/all torture_host_calls_libraries
  exec tools/mutation/mutate build/release "$@"
}
